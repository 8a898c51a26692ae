#ifndef ZR_XML_BASE_VARIABLE_COMPOUND_TYPE_H
#define ZR_XML_BASE_VARIABLE_COMPOUND_TYPE_H

#include <ZrXmlBasicType.h>
#include <ZrXmlFactory.h>
#include <ZrXmlObject.h>
#include <ZrXmlVectorType.h>

#include <string>

// Marks a plug-in library's entry points: unmangled C symbols, visible even when the library is
// built with hidden symbols (as the project's plug-ins are, so that they export nothing else).
#define ZR_PLUGIN_ENTRY_POINT extern "C" __attribute__((visibility("default")))

// An object whose children are created by element name: each child element's token picks a creator
// from the object's factory. The derived class registers its creators in registerComponentCreators()
// and creates, reads and stores each child in readVariableComponent(), usually through
// newObjectFromToken(); it also writes its children itself, after this class's write().
//
// A document may name plug-in libraries in an "addLibraries" element (in the parent's namespace),
// whose entry points add creators at run time:
//
//   <formula xmlns="...">
//     <addLibraries size="1"><group>zrExpressionExtras</group></addLibraries>
//     <quotient>...</quotient>
//   </formula>
//
// The "addLibraries" element reaches readVariableComponent like any child; the derived class passes it
// to readLibraryList(), which reads the list and loads the libraries. It must come before the children
// whose creators its libraries provide, which is where write() puts it.
class ZrXmlBaseVariableCompoundType : public ZrXmlObject {
 public:
  typedef ZrXmlVectorType<ZrXmlBasicType<std::string>> LibraryList;
  typedef ZrXmlFactory::Creator Creator;
  typedef ZrXmlFactory::CreatorMap CreatorMap;

  // The plug-in interface: a library file named in "addLibraries" with this extension appended,
  // exporting two C functions. Both take an index 0, 1, 2, ...; "getClassToken" returns the token of
  // the index's class, an empty token after the last, and "getCreator" the creator for that token.
  typedef const ZrToken& (*ClassTokenFunction)(ZrU32 index);
  typedef Creator (*CreatorFunction)(ZrU32 index);
  static const char* const m_thePluginExtension;           // ".zrp"
  static const char* const m_theClassTokenFunctionName;    // "getClassToken"
  static const char* const m_theCreatorFunctionName;       // "getCreator"
  // A library listing more classes than this is cut short with a message: a list without its empty
  // closing token would otherwise be walked forever.
  static const ZrU32 m_theMaxPluginClasses = 4096;

  ZrXmlBaseVariableCompoundType();
  // The copy takes the library list but starts with an empty factory: like a copied compound, it is
  // not initialised and registers its creators again through its own xmlInit.
  ZrXmlBaseVariableCompoundType(const ZrXmlBaseVariableCompoundType& other);
  // Copies the library list; the target keeps its own factory.
  ZrXmlBaseVariableCompoundType& operator=(const ZrXmlBaseVariableCompoundType& other);
  ~ZrXmlBaseVariableCompoundType() override;

  void accept(ZrXmlObjectVisitor* visitor) const override;
  ZrBoolean xmlInit() override;
  // Reads every child through readVariableComponent; a child it does not take is reported with its
  // namespace-qualified name and line and skipped, and the read still succeeds.
  ZrBoolean read(ZrXmlReader& reader) override;
  // Writes the library list, when it holds any name; the children are the derived class's to write.
  ZrBoolean write(ZrXmlWriter& writer) const override;
  // Describes the library list and one element per creator, in token order.
  ZrBoolean writeSchema(ZrXmlSchema& schema) const override;

  virtual void registerComponentCreators() = 0;
  virtual void registerComponentCreator(const ZrToken& token, Creator creator);
  // A new object for the token (owned by the caller), or null; registers the creators first if needed.
  virtual ZrXmlObject* newObjectFromToken(const ZrToken& token) const;
  virtual const LibraryList& addLibraries() const;
  virtual void setAddLibraries(const LibraryList& libraries);
  virtual const CreatorMap& creatorMap() const;
  // Reads the child element whose token is given, the reader standing on its start tag. False when
  // the child is not taken: the caller then reports it and skips its subtree.
  virtual ZrBoolean readVariableComponent(const ZrToken& token, ZrXmlReader& reader) = 0;
  // Loads the first library of the list that can be loaded (the later names are not tried) and
  // registers the creators it offers. Libraries are found only on ZrDllLoader's search path. A missing
  // entry point is reported with the library's path. An index whose getCreator gives no creator is
  // reported (print type 5, the library and the index) and ends the class list; with
  // setSkipNullCreators(true) (class default setDefaultSkipNullCreators, off by default) the list goes on
  // with the next index instead, so that one broken class does not take the later ones with it.
  virtual void processLibraries();
  bool skipNullCreators() const { return m_theSkipNullCreators; }
  void setSkipNullCreators(bool flag) { m_theSkipNullCreators = flag; }
  static bool defaultSkipNullCreators();
  static void setDefaultSkipNullCreators(bool flag);

  // Skips the element the reader stands on, with its whole subtree. Its attributes are dropped
  // first: the reader reports attributes that nobody took, and a skipped element's were not wanted.
  static void skipElement(ZrXmlReader& reader);
  static void dropAttributes(ZrXmlReader& reader);

 protected:
  // For readVariableComponent: when token names the "addLibraries" element (in any namespace), reads
  // the list, processes the libraries and returns true; otherwise returns false and reads nothing.
  ZrBoolean readLibraryList(const ZrToken& token, ZrXmlReader& reader);

 private:
  // Registered lazily, also from const operations (newObjectFromToken, writing, the schema).
  mutable ZrXmlFactory m_theFactory;
  LibraryList m_theAddLibraries;
  bool m_theSkipNullCreators;

  static bool m_theDefaultSkipNullCreators;
};

#endif
