#include "ZrXmlValueListVisitor.h"

#include "ZrPrint.h"
#include "ZrXmlBasicType.h"
#include "ZrXmlCompoundType.h"
#include "ZrXmlEnumType.h"
#include "ZrXmlOrientation.h"
#include "ZrXmlVector.h"
#include "ZrXmlVectorVector.h"

#include <string>

namespace {

// Reals in their document text form, separated by blanks.
std::string realsText(std::initializer_list<double> reals) {
  std::string text;
  for (double real : reals) {
    if (!text.empty()) text += ' ';
    text += ZrXmlBasicType<double>(real).text();
  }
  return text;
}

}  // namespace

ZrXmlValueListVisitor::ZrXmlValueListVisitor(std::ostream& out, const std::string& rootName)
    : m_theOut(out), m_thePath(rootName), m_theDepth(0) {}

void ZrXmlValueListVisitor::list(const ZrXmlObject& root) { root.accept(this); }

void ZrXmlValueListVisitor::visit(const ZrXmlObject* object) {
  if (object) line("[" + object->token().tokenText() + "]");
}

void ZrXmlValueListVisitor::visit(const ZrXmlCompoundType* compound) {
  if (!compound) return;
  if (m_theDepth >= m_theMaxDepth) {
    Zr::Print::instance().write(Zr::PrintError,
                                "ZrXmlValueListVisitor Error: nesting deeper than %u levels is not listed.\n\tPath: %s\n",
                                static_cast<unsigned>(m_theMaxDepth), m_thePath.c_str());
    return;
  }
  ++m_theDepth;
  compound->forEachComponent([this](const ZrToken& token, const ZrXmlObject* component,
                                    ZrXmlCompoundType::ComponentKind kind, bool readOnly) {
    if (!component || readOnly) return;
    const std::string::size_type parentLength = m_thePath.size();
    m_thePath += kind == ZrXmlCompoundType::ATTRIBUTE_COMPONENT ? "/@" : "/";
    m_thePath += token.tokenText();
    component->accept(this);
    m_thePath.resize(parentLength);
  });
  --m_theDepth;
}

void ZrXmlValueListVisitor::line(const std::string& text) { m_theOut << m_thePath << " = " << text << '\n'; }

#define ZR_LIST_BASIC(T) \
  void ZrXmlValueListVisitor::visit(const ZrXmlBasicType<T>* value) { line(value->text()); }
#define ZR_LIST_ENUM(T) \
  void ZrXmlValueListVisitor::visit(const ZrXmlEnumType<T>* value) { line(value->enumString()); }

ZR_LIST_BASIC(bool)
ZR_LIST_BASIC(char)
ZR_LIST_BASIC(short)
ZR_LIST_BASIC(unsigned short)
ZR_LIST_BASIC(int)
ZR_LIST_BASIC(unsigned int)
ZR_LIST_BASIC(unsigned char)
ZR_LIST_BASIC(double)
ZR_LIST_BASIC(std::string)
ZR_LIST_BASIC(ZrAngle)
ZR_LIST_BASIC(ZrNonNegReal)
ZR_LIST_ENUM(bool)
ZR_LIST_ENUM(short)
ZR_LIST_ENUM(unsigned short)
ZR_LIST_ENUM(int)
ZR_LIST_ENUM(unsigned int)
ZR_LIST_ENUM(unsigned char)
ZR_LIST_ENUM(ZrNonNegReal)

#undef ZR_LIST_BASIC
#undef ZR_LIST_ENUM

// Nested containers are bounded by their types, not by the document, so they need no depth guard.
void ZrXmlValueListVisitor::visitContainer(const ZrXmlObject*, const ElementWalk& walk) {
  const std::string::size_type parentLength = m_thePath.size();
  ZrU32 index = 0;
  walk([this, parentLength, &index](const ZrToken& role, const ZrXmlObject& element) {
    const std::string& name = role.tokenText();
    if (name == ZrXml::ZrElementToken.tokenText()) {
      m_thePath += "[" + std::to_string(index++) + "]";
    } else if (name == ZrXml::ZrKeyToken.tokenText() || name == ZrXml::ZrValueToken.tokenText()) {
      m_thePath += "[" + std::to_string(index) + "]/" + name;
      if (name == ZrXml::ZrValueToken.tokenText()) ++index;
    } else {
      m_thePath += "/" + name;
    }
    element.accept(this);
    m_thePath.resize(parentLength);
  });
}

void ZrXmlValueListVisitor::visit(const ZrXmlVector* value) { line(realsText({value->x(), value->y(), value->z()})); }

void ZrXmlValueListVisitor::visit(const ZrXmlOrientation* value) {
  line(realsText({value->q0(), value->q1(), value->q2(), value->q3()}));
}

void ZrXmlValueListVisitor::visit(const ZrXmlVectorVector* value) {
  const std::string::size_type parentLength = m_thePath.size();
  for (ZrU32 index = 0; index < value->size(); ++index) {
    const ZrVector& vector = (*value)[index];
    m_thePath += "[" + std::to_string(index) + "]";
    line(realsText({vector.x(), vector.y(), vector.z()}));
    m_thePath.resize(parentLength);
  }
}
