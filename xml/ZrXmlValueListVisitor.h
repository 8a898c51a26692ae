#ifndef ZR_XML_VALUE_LIST_VISITOR_H
#define ZR_XML_VALUE_LIST_VISITOR_H

#include <ZrTypes.h>
#include <ZrXmlObjectVisitor.h>

#include <ostream>
#include <string>

// Lists every value of an object tree as one "path = value" line, in the order a written document
// holds them; read-only registrations, which are never written, are left out. A path joins the tokens from the root with "/"; an attribute's name is marked by "@":
//   robotCell/@name = Assembly cell 4
//   robotCell/loader/mode = automatic
//   robotCell/loader/shoulder/lower = -2.61799
// Values appear in their document text form (enumerations by name). An object of a kind the visitor
// does not know is listed by its class token in brackets.
//
// Containers are listed element by element: vector and set entries by their index in brackets, map
// entries by index with their key and value, pairs by "first" and "second". Vectors and orientations
// are one line of their components; an array of vectors is one line per vector:
//   robotCell/stations[0] = 4
//   robotCell/parameters[1]/key = weldCurrent
//   robotCell/loader/base = 0 -1.2 0.4
//   robotCell/loader/path[2] = 0.6 0.4 0.9
class ZrXmlValueListVisitor : public ZrXmlObjectVisitor {
 public:
  // Nesting deeper than this is reported and not followed: a compound that registers itself, directly
  // or through its members, would otherwise be walked forever.
  static const ZrU32 m_theMaxDepth = 256;

  ZrXmlValueListVisitor(std::ostream& out, const std::string& rootName);

  // Lists root and everything registered beneath it.
  void list(const ZrXmlObject& root);

  using ZrXmlObjectVisitor::visit;
  void visit(const ZrXmlObject* object) override;
  void visit(const ZrXmlCompoundType* compound) override;

  void visit(const ZrXmlBasicType<bool>* value) override;
  void visit(const ZrXmlBasicType<char>* value) override;
  void visit(const ZrXmlBasicType<short>* value) override;
  void visit(const ZrXmlBasicType<unsigned short>* value) override;
  void visit(const ZrXmlBasicType<int>* value) override;
  void visit(const ZrXmlBasicType<unsigned int>* value) override;
  void visit(const ZrXmlBasicType<unsigned char>* value) override;
  void visit(const ZrXmlBasicType<double>* value) override;
  void visit(const ZrXmlBasicType<std::string>* value) override;
  void visit(const ZrXmlBasicType<ZrAngle>* value) override;
  void visit(const ZrXmlBasicType<ZrNonNegReal>* value) override;

  void visit(const ZrXmlEnumType<bool>* value) override;
  void visit(const ZrXmlEnumType<short>* value) override;
  void visit(const ZrXmlEnumType<unsigned short>* value) override;
  void visit(const ZrXmlEnumType<int>* value) override;
  void visit(const ZrXmlEnumType<unsigned int>* value) override;
  void visit(const ZrXmlEnumType<unsigned char>* value) override;
  void visit(const ZrXmlEnumType<ZrNonNegReal>* value) override;

  void visitContainer(const ZrXmlObject* container, const ElementWalk& walk) override;
  void visit(const ZrXmlVector* value) override;
  void visit(const ZrXmlOrientation* value) override;
  void visit(const ZrXmlVectorVector* value) override;

 private:
  void line(const std::string& text);

  std::ostream& m_theOut;
  std::string m_thePath;
  ZrU32 m_theDepth;
};

#endif
