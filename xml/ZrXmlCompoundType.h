#ifndef ZR_XML_COMPOUND_TYPE_H
#define ZR_XML_COMPOUND_TYPE_H

#include <ZrXmlObject.h>
#include <ZrXmlRegistrationTable.h>

#include <functional>
#include <map>
#include <memory>
#include <utility>

// The base of every persistent class made of named parts. A derived class keeps its parts as ordinary
// members (each a ZrXmlObject) and registers each one, in registerComponents(), under the token that
// names it in the document, as a child element or as an attribute. Reading, writing and the schema
// are then driven by these registrations alone.
//
// Registrations are built lazily (on the first read, write or schema run) and point at the object's
// own members; they are never copied, so a copy registers its own members on first use. The maps are
// ordered by token text, which fixes the order of attributes and children in written documents.
//
// A read-only registration is read from documents and described in the schema but never written.
// Element and attribute registrations share one read-only table keyed by token, so a token marked
// read-only both ways keeps only the kind marked last.
//
// Where the registrations are kept. An object whose registerComponents() makes the same calls as the
// first object of its class (same tokens, same order, members at the same offsets) shares that class's
// ZrXmlRegistrationTable and holds no maps: reading, writing and the schema look members up in the
// table. The maps of this interface (componentMap() and its siblings) are then built from the table
// when first asked for (also while the object registers), and the object keeps them from then on, as it
// does when its calls differ from its class's or when it registers anything after xmlInit. Either way
// every operation sees the same registrations. While an object shares the table, reading looks members
// up there, not through componentMap(): a class that overrides componentMap() or attributeComponentMap()
// to look up members its own way asks for the map once (in registerComponents(), say), and its objects
// then keep maps and are looked up through its override.
class ZrXmlCompoundType : public ZrXmlObject {
 public:
  typedef std::map<ZrToken, ZrXmlObject*> ComponentMap;
  typedef std::map<ZrToken, ZrU32> SpecialDescriptorMap;

  // Codes of the read-only table.
  static constexpr ZrU32 m_theReadOnlyElementCode = 0;
  static constexpr ZrU32 m_theReadOnlyAttributeCode = 1;

  enum ComponentKind { ELEMENT_COMPONENT, ATTRIBUTE_COMPONENT };
  // Receives one registration: its token, the registered object (may be null), its kind, and
  // whether it is read-only.
  typedef std::function<void(const ZrToken& token, const ZrXmlObject* component, ComponentKind kind, bool readOnly)>
      ComponentFunction;

  ZrXmlCompoundType();
  ZrXmlCompoundType(const ZrXmlCompoundType& other);
  // Like a copy, the object made starts without registrations; a derived class's own (implicit) move
  // constructor moves its members.
  ZrXmlCompoundType(ZrXmlCompoundType&& other) noexcept : ZrXmlObject(std::move(other)) {}
  ZrXmlCompoundType& operator=(const ZrXmlCompoundType& other);
  ~ZrXmlCompoundType() override;

  // True when both register the same tokens (and read-only marks); member values are not compared.
  bool operator==(const ZrXmlCompoundType& other) const;
  bool operator!=(const ZrXmlCompoundType& other) const { return !(*this == other); }

  void accept(ZrXmlObjectVisitor* visitor) const override;
  ZrBoolean xmlInit() override;
  ZrBoolean read(ZrXmlReader& reader) override;
  ZrBoolean write(ZrXmlWriter& writer) const override;
  ZrBoolean writeSchema(ZrXmlSchema& schema) const override;

  virtual ZrBoolean readAttributes(ZrXmlReader& reader);
  virtual ZrBoolean readElements(ZrXmlReader& reader);
  virtual ZrBoolean writeAttributes(ZrXmlWriter& writer) const;
  virtual ZrBoolean writeElements(ZrXmlWriter& writer) const;
  virtual ZrBoolean writeSchemaAttributes(ZrXmlSchema& schema) const;
  virtual ZrBoolean writeSchemaElements(ZrXmlSchema& schema) const;
  virtual void registerComponents() = 0;
  virtual void registerComponent(const ZrToken& token, ZrXmlObject* object);
  virtual void registerComponentReadOnly(const ZrToken& token, ZrXmlObject* object);
  virtual ComponentMap& componentMap() const;
  virtual void registerAttributeComponent(const ZrToken& token, ZrXmlObject* object);
  virtual void registerAttributeComponentReadOnly(const ZrToken& token, ZrXmlObject* object);
  virtual ComponentMap& attributeComponentMap();
  virtual SpecialDescriptorMap& specialDescriptorMap();
  virtual ZrBoolean hasChildren() const;
  virtual ZrBoolean hasAttributes() const;
  virtual ZrBoolean readValueFromToken(const ZrToken& token, ZrXmlReader& reader);
  virtual ZrBoolean readValueFromSpecialToken(const ZrToken& token, ZrXmlReader& reader);
  virtual ZrBoolean readAttributeFromToken(const ZrToken& token, ZrXmlReader& reader);
  virtual ComponentMap* newComponentMap() const;
  virtual SpecialDescriptorMap* newSpecialDescriptorMap();
  virtual ComponentMap* createComponentMap() const;
  virtual ComponentMap* createAttributeComponentMap();
  virtual SpecialDescriptorMap* createSpecialDescriptorMap();
  virtual ZrBoolean isReadOnlyComponent(const ZrToken& token) const;
  virtual ZrBoolean isReadOnlyAttribute(const ZrToken& token) const;

  // Walks the registrations read-only: attributes first, then elements, each in ascending token
  // order. Registers the components first if that has not happened yet.
  void forEachComponent(const ComponentFunction& function) const;

 private:
  struct RegistrationSession;
  typedef ZrXmlRegistrationTable::Kind Kind;

  bool hasSpecialCode(const ZrToken& token, ZrU32 code) const;
  void writeElement(ZrXmlWriter& writer, const ZrToken& token, const ZrXmlObject& component) const;

  // Registration through the class's table (see the class comment).
  void registerThroughTable();
  void finishRegistration(const RegistrationSession& session);
  void addRegistration(const ZrToken& token, ZrXmlObject* object, Kind kind, bool readOnly);
  void addToOwnMaps(const ZrToken& token, ZrXmlObject* object, Kind kind, bool readOnly) const;
  void replayIntoOwnMaps(const ZrXmlRegistrationTable& table, std::size_t calls) const;
  void keepOwnMaps() const;
  bool hasOwnMaps() const { return m_theComponentMap || m_theAttributeComponentMap || m_theSpecialDescriptorMap; }
  bool componentMapExists() const;
  bool specialMapExists() const;
  // The member registered for a token, found through the table or the maps; false when none is.
  bool findComponent(const ZrToken& token, Kind kind, ZrXmlObject*& component);
  template <class Function>
  void forEachRegistered(Kind kind, Function function) const;
  template <class Function>
  void forEachMark(Function function) const;

  // Each thread registers on its own. Every registration call looks at it, so it is reached the short
  // way (initial-exec: the library is loaded with the program, or early enough for a pointer's room).
  static thread_local RegistrationSession* m_theInnermostSession __attribute__((tls_model("initial-exec")));

  // A look-up through the table found no element registrations: the component map would have been
  // created empty by it, which operator== can tell from no map at all. Declared first, it sits beside the
  // base's flag byte instead of taking a word of its own.
  mutable bool m_theComponentMapAskedFor = false;
  // Where the next look-up through the table starts, for elements and for attributes (see
  // ZrXmlRegistrationTable::findElement); they fill the rest of the same word.
  std::uint16_t m_theNextElementEntry = 0;
  std::uint16_t m_theNextAttributeEntry = 0;
  // Shared with the other objects of the class, or null while the object keeps maps of its own.
  mutable const ZrXmlRegistrationTable* m_theSharedRegistrations = nullptr;
  // Created on first need, also from const operations.
  mutable std::unique_ptr<ComponentMap> m_theComponentMap;
  mutable std::unique_ptr<ComponentMap> m_theAttributeComponentMap;
  mutable std::unique_ptr<SpecialDescriptorMap> m_theSpecialDescriptorMap;
};

#endif
