#include "ZrXmlCompoundType.h"

#include "ZrPrint.h"
#include "ZrXmlObjectVisitor.h"
#include "ZrXmlReader.h"
#include "ZrXmlSchema.h"
#include "ZrXmlSchemaElementType.h"
#include "ZrXmlWriter.h"

#include <algorithm>
#include <typeinfo>
#include <utility>
#include <vector>

namespace {
const int startTagMode = 1;
const int emptyElementMode = 3;

bool isElementStart(int mode) { return mode == startTagMode || mode == emptyElementMode; }

// Whether a registration call repeats the class's recorded one: the cheap fields first, the token last.
bool sameCall(const ZrXmlRegistrationTable::Call& recorded, const ZrToken& token, std::intptr_t offset,
              ZrXmlRegistrationTable::Kind kind, bool readOnly, bool null) {
  return recorded.kind == kind && recorded.readOnly == readOnly && recorded.null == null &&
         (null || recorded.offset == offset) && recorded.token == token;
}
}  // namespace

// One object's registerComponents() run: its calls are recorded into a new table for its class, or
// compared with the table its class already has. Sessions nest when registering one object makes
// another register (innermost last); calls of an object other than the innermost session's go to
// that object's own maps.
struct ZrXmlCompoundType::RegistrationSession {
  const ZrXmlCompoundType* owner;
  ZrXmlRegistrationTable* table;
  bool recording;       // the table is new and takes every call
  std::size_t matched;  // calls equal to the table's so far
  bool ownMaps;         // the object keeps maps of its own: calls go there
  RegistrationSession* outer;
};

thread_local ZrXmlCompoundType::RegistrationSession* ZrXmlCompoundType::m_theInnermostSession
    __attribute__((tls_model("initial-exec"))) = nullptr;

ZrXmlCompoundType::ZrXmlCompoundType() = default;

// The copy starts without registrations: its own xmlInit registers its own members.
ZrXmlCompoundType::ZrXmlCompoundType(const ZrXmlCompoundType& other) : ZrXmlObject(other) {}

// The target keeps its registrations, which already point at its own members.
ZrXmlCompoundType& ZrXmlCompoundType::operator=(const ZrXmlCompoundType& other) {
  if (this != &other) ZrXmlObject::operator=(other);
  return *this;
}

ZrXmlCompoundType::~ZrXmlCompoundType() = default;

bool ZrXmlCompoundType::operator==(const ZrXmlCompoundType& other) const {
  bool result = ZrXmlObject::operator==(other);
  if (!xmlInitialized() || !other.xmlInitialized()) return result;
  if (specialMapExists() && other.specialMapExists()) {
    std::vector<std::pair<const ZrToken*, ZrU32>> mine, theirs;
    forEachMark([&mine](const ZrToken& token, ZrU32 code) { mine.emplace_back(&token, code); });
    other.forEachMark([&theirs](const ZrToken& token, ZrU32 code) { theirs.emplace_back(&token, code); });
    const auto sameMark = [](const std::pair<const ZrToken*, ZrU32>& one, const std::pair<const ZrToken*, ZrU32>& two) {
      return *one.first == *two.first && one.second == two.second;
    };
    if (!std::equal(mine.begin(), mine.end(), theirs.begin(), theirs.end(), sameMark)) result = false;
  }
  if (!componentMapExists() || !other.componentMapExists() || !result) return result;
  // Only the registered tokens are compared; the members' values are the business of equality().
  std::vector<const ZrToken*> mine, theirs;
  forEachRegistered(ZrXmlRegistrationTable::ELEMENT, [&mine](const ZrToken& token, ZrXmlObject*) { mine.push_back(&token); });
  other.forEachRegistered(ZrXmlRegistrationTable::ELEMENT,
                          [&theirs](const ZrToken& token, ZrXmlObject*) { theirs.push_back(&token); });
  return std::equal(mine.begin(), mine.end(), theirs.begin(), theirs.end(),
                    [](const ZrToken* one, const ZrToken* two) { return *one == *two; });
}

void ZrXmlCompoundType::accept(ZrXmlObjectVisitor* visitor) const {
  if (visitor) visitor->visit(this);
}

ZrBoolean ZrXmlCompoundType::xmlInit() {
  if (ZrXmlObject::xmlInit()) registerThroughTable();
  return true;
}

void ZrXmlCompoundType::registerThroughTable() {
  // Registering again (after setXmlInitialized(false)) adds to what the object holds, as maps do.
  if (m_theSharedRegistrations) keepOwnMaps();
  RegistrationSession session{this, nullptr, false, 0, hasOwnMaps(), m_theInnermostSession};
  if (!session.ownMaps) {
    bool created = false;
    session.table = ZrXmlRegistrationTable::findOrCreate(typeid(*this), created);
    if (created) session.recording = true;
    else if (!session.table->sealed()) session.ownMaps = true;  // still being recorded, further out or elsewhere
  }
  // The session ends with this scope even if registerComponents() throws.
  struct Installed {
    explicit Installed(RegistrationSession& installed) : session(installed) { m_theInnermostSession = &session; }
    ~Installed() { m_theInnermostSession = session.outer; }
    RegistrationSession& session;
  };
  {
    Installed installed(session);
    registerComponents();
  }
  finishRegistration(session);
}

void ZrXmlCompoundType::finishRegistration(const RegistrationSession& session) {
  if (session.ownMaps) return;
  if (session.recording) {
    session.table->seal();
    m_theSharedRegistrations = session.table;
  } else if (session.matched == session.table->calls().size()) {
    m_theSharedRegistrations = session.table;
  } else {
    replayIntoOwnMaps(*session.table, session.matched);  // fewer calls than the class's
  }
}

void ZrXmlCompoundType::addRegistration(const ZrToken& token, ZrXmlObject* object, Kind kind, bool readOnly) {
  RegistrationSession* session = m_theInnermostSession;
  if (session && session->owner == this && !session->ownMaps) {
    const std::intptr_t offset = ZrXmlRegistrationTable::offsetOf(this, object);
    if (session->recording) {
      session->table->record({token, offset, kind, readOnly, object == nullptr});
      return;
    }
    const std::vector<ZrXmlRegistrationTable::Call>& calls = session->table->calls();
    if (session->matched < calls.size() &&
        sameCall(calls[session->matched], token, offset, kind, readOnly, object == nullptr)) {
      ++session->matched;
      return;
    }
    session->ownMaps = true;
    replayIntoOwnMaps(*session->table, session->matched);
  } else if (m_theSharedRegistrations) {
    keepOwnMaps();
  }
  addToOwnMaps(token, object, kind, readOnly);
}

// What the registration functions do with maps of the object's own.
void ZrXmlCompoundType::addToOwnMaps(const ZrToken& token, ZrXmlObject* object, Kind kind, bool readOnly) const {
  ZrXmlCompoundType* self = const_cast<ZrXmlCompoundType*>(this);  // maps are mutable state
  if (kind == ZrXmlRegistrationTable::ELEMENT) {
    (*createComponentMap())[token] = object;
    if (readOnly) (*self->createSpecialDescriptorMap())[token] = m_theReadOnlyElementCode;
  } else {
    (*self->createAttributeComponentMap())[token] = object;
    if (readOnly) (*self->createSpecialDescriptorMap())[token] = m_theReadOnlyAttributeCode;
  }
}

void ZrXmlCompoundType::replayIntoOwnMaps(const ZrXmlRegistrationTable& table, std::size_t calls) const {
  for (std::size_t i = 0; i < calls; ++i) {
    const ZrXmlRegistrationTable::Call& call = table.calls()[i];
    addToOwnMaps(call.token, ZrXmlRegistrationTable::memberAt(this, call.offset, call.null), call.kind, call.readOnly);
  }
}

// From now on the object holds its registrations in maps of its own, built from the shared table, or,
// when a map is asked for while the object registers, from its calls so far (the rest follow them).
void ZrXmlCompoundType::keepOwnMaps() const {
  RegistrationSession* session = m_theInnermostSession;
  if (session && session->owner == this && !session->ownMaps) {
    session->ownMaps = true;  // a table being recorded stays unsealed: its class keeps maps from now on
    replayIntoOwnMaps(*session->table, session->recording ? session->table->calls().size() : session->matched);
    return;
  }
  const ZrXmlRegistrationTable* table = m_theSharedRegistrations;
  if (!table) return;
  m_theSharedRegistrations = nullptr;
  replayIntoOwnMaps(*table, table->calls().size());
  if (m_theComponentMapAskedFor) createComponentMap();
}

bool ZrXmlCompoundType::componentMapExists() const {
  if (m_theSharedRegistrations) return !m_theSharedRegistrations->elements().empty() || m_theComponentMapAskedFor;
  return m_theComponentMap != nullptr;
}

bool ZrXmlCompoundType::specialMapExists() const {
  if (m_theSharedRegistrations) return !m_theSharedRegistrations->marks().empty();
  return m_theSpecialDescriptorMap != nullptr;
}

bool ZrXmlCompoundType::findComponent(const ZrToken& token, Kind kind, ZrXmlObject*& component) {
  if (const ZrXmlRegistrationTable* table = m_theSharedRegistrations) {
    const bool element = kind == ZrXmlRegistrationTable::ELEMENT;
    const ZrXmlRegistrationTable::Entry* entry = element ? table->findElement(token, m_theNextElementEntry)
                                                         : table->findAttribute(token, m_theNextAttributeEntry);
    if (!entry) {
      if (element) m_theComponentMapAskedFor = true;
      return false;
    }
    component = ZrXmlRegistrationTable::memberAt(this, *entry);
    return true;
  }
  ComponentMap& components = kind == ZrXmlRegistrationTable::ELEMENT ? componentMap() : attributeComponentMap();
  ComponentMap::iterator entry = components.find(token);
  if (entry == components.end()) return false;
  component = entry->second;
  return true;
}

template <class Function>
void ZrXmlCompoundType::forEachRegistered(Kind kind, Function function) const {
  if (const ZrXmlRegistrationTable* table = m_theSharedRegistrations) {
    const auto& entries = kind == ZrXmlRegistrationTable::ELEMENT ? table->elements() : table->attributes();
    for (const ZrXmlRegistrationTable::Entry& entry : entries)
      function(entry.token, ZrXmlRegistrationTable::memberAt(this, entry));
    return;
  }
  const ComponentMap* map =
      kind == ZrXmlRegistrationTable::ELEMENT ? m_theComponentMap.get() : m_theAttributeComponentMap.get();
  if (map)
    for (const auto& entry : *map) function(entry.first, entry.second);
}

template <class Function>
void ZrXmlCompoundType::forEachMark(Function function) const {
  if (const ZrXmlRegistrationTable* table = m_theSharedRegistrations) {
    for (const ZrXmlRegistrationTable::Mark& mark : table->marks()) function(mark.token, mark.code);
  } else if (m_theSpecialDescriptorMap) {
    for (const auto& entry : *m_theSpecialDescriptorMap) function(entry.first, entry.second);
  }
}

ZrBoolean ZrXmlCompoundType::read(ZrXmlReader& reader) {
  if (!readAttributes(reader)) return false;
  return readElements(reader);
}

ZrBoolean ZrXmlCompoundType::readAttributes(ZrXmlReader& reader) {
  ZrBoolean result = ZrXmlObject::read(reader);
  if (!result) return result;
  const ZrU32 count = reader.remainingNumOfAttributes();
  ZrToken& name = reader.nameSlot(ZrXmlReader::ATTRIBUTE_NAME);  // a copy: taking the value removes the entry
  ZrU32 remaining = count;
  for (ZrU32 round = 0; round < count && remaining != 0; ++round) {
    name = reader.attributeName();
    readAttributeFromToken(name, reader);
    const ZrU32 before = remaining;
    remaining = reader.remainingNumOfAttributes();
    // The reader always offers the first unread attribute: one that nobody took (unknown, or held by
    // a component that reads no attributes) is dropped, so that the next round sees the next one.
    if (remaining == before) {
      reader.attributeValue(name);
      remaining = reader.remainingNumOfAttributes();
    }
  }
  return result;
}

// Unknown and unreadable children never stop the read: each is reported and its subtree skipped.
// Children missing from the document leave their members as they were.
ZrBoolean ZrXmlCompoundType::readElements(ZrXmlReader& reader) {
  if (reader.mode() == emptyElementMode) return true;
  if (!reader.enterObject()) return true;
  int mode = reader.readXml();
  ZrToken& child = reader.nameSlot(ZrXmlReader::CHILD_NAME);  // a copy: reading the child moves the reader on
  while (isElementStart(mode)) {
    child = reader.element();
    if (!readValueFromToken(child, reader)) reader.nextMatchingEndTag();
    mode = reader.readXml();
  }
  reader.leaveObject();
  return true;
}

ZrBoolean ZrXmlCompoundType::readAttributeFromToken(const ZrToken& token, ZrXmlReader& reader) {
  ZrXmlObject* component = nullptr;
  if (!findComponent(token, ZrXmlRegistrationTable::ATTRIBUTE, component)) {
    Zr::Print::instance().write(Zr::PrintError, "Bad attribute token: %s on line %d\n", token.c_str(),
                                reader.lineCountOfFile());
    return false;
  }
  if (component) component->readAttribute(reader);
  return true;
}

// A token registered with a null object is skipped like an unknown one, but without a report: the
// registration itself says that the element is known and deliberately not kept.
ZrBoolean ZrXmlCompoundType::readValueFromToken(const ZrToken& token, ZrXmlReader& reader) {
  ZrXmlObject* component = nullptr;
  if (!findComponent(token, ZrXmlRegistrationTable::ELEMENT, component)) return readValueFromSpecialToken(token, reader);
  if (!component) return false;
  component->read(reader);
  return true;
}

ZrBoolean ZrXmlCompoundType::readValueFromSpecialToken(const ZrToken& token, ZrXmlReader& reader) {
  Zr::Print::instance().write(Zr::PrintError, "Bad token: %s on line %d\n", token.c_str(), reader.lineCountOfFile());
  return false;
}

// The parent writes this object's start and end tags around this call.
ZrBoolean ZrXmlCompoundType::write(ZrXmlWriter& writer) const {
  if (!writer.writeDefaultDataFlag() && equalsDefault()) return true;
  if (!writeAttributes(writer)) return false;
  return writeElements(writer);
}

// Attributes are written even when they hold their default value.
ZrBoolean ZrXmlCompoundType::writeAttributes(ZrXmlWriter& writer) const {
  ZrBoolean result = ZrXmlObject::write(writer);
  if (!result || !hasAttributes()) return result;
  forEachRegistered(ZrXmlRegistrationTable::ATTRIBUTE, [this, &writer](const ZrToken& token, const ZrXmlObject* component) {
    if (!component || isReadOnlyAttribute(token)) return;
    writer.setAttributeName(token);
    component->write(writer);
  });
  return result;
}

// Single values are always written; structured components still in their default state are left
// out unless the writer asks for default data.
ZrBoolean ZrXmlCompoundType::writeElements(ZrXmlWriter& writer) const {
  if (!hasChildren()) return true;
  const bool writeDefaults = writer.writeDefaultDataFlag();
  forEachRegistered(ZrXmlRegistrationTable::ELEMENT,
                    [this, &writer, writeDefaults](const ZrToken& token, const ZrXmlObject* component) {
                      if (!component || isReadOnlyComponent(token)) return;
                      if (!writeDefaults && !component->isBasicType() && component->equalsDefault()) return;
                      writeElement(writer, token, *component);
                    });
  return true;
}

void ZrXmlCompoundType::writeElement(ZrXmlWriter& writer, const ZrToken& token, const ZrXmlObject& component) const {
  writer.writeStartTag(token);
  component.write(writer);
  writer.writeEndTag();
}

ZrBoolean ZrXmlCompoundType::writeSchema(ZrXmlSchema& schema) const {
  if (!writeSchemaAttributes(schema)) return false;
  return writeSchemaElements(schema);
}

// Read-only registrations are described too: documents may hold them.
ZrBoolean ZrXmlCompoundType::writeSchemaAttributes(ZrXmlSchema& schema) const {
  ZrBoolean result = ZrXmlObject::writeSchema(schema);
  if (!result || !hasAttributes()) return result;
  forEachRegistered(ZrXmlRegistrationTable::ATTRIBUTE, [&schema](const ZrToken& token, const ZrXmlObject* component) {
    if (!component) return;
    schema.setAttributeName(token);
    component->writeSchema(schema);
  });
  return result;
}

// A component's type is described once: the generator answers whether it already holds the type
// of that element, named by the component's run-time type.
ZrBoolean ZrXmlCompoundType::writeSchemaElements(ZrXmlSchema& schema) const {
  if (!hasChildren()) return true;
  schema.openGroup();
  forEachRegistered(ZrXmlRegistrationTable::ELEMENT, [&schema](const ZrToken& token, const ZrXmlObject* component) {
    if (!component) return;
    schema.writeStartTag(token, ZrXmlSchemaElementType::XML_STARTTAG_OPTION);
    const char* typeName = typeid(*component).name();
    if (*typeName == '*') ++typeName;
    if (!schema.isRegistered(token, typeName)) {
      component->writeSchema(schema);
      schema.writeEndTag();
    }
  });
  schema.closeGroup();
  return true;
}

void ZrXmlCompoundType::registerComponent(const ZrToken& token, ZrXmlObject* object) {
  addRegistration(token, object, ZrXmlRegistrationTable::ELEMENT, false);
}

void ZrXmlCompoundType::registerComponentReadOnly(const ZrToken& token, ZrXmlObject* object) {
  addRegistration(token, object, ZrXmlRegistrationTable::ELEMENT, true);
}

void ZrXmlCompoundType::registerAttributeComponent(const ZrToken& token, ZrXmlObject* object) {
  addRegistration(token, object, ZrXmlRegistrationTable::ATTRIBUTE, false);
}

void ZrXmlCompoundType::registerAttributeComponentReadOnly(const ZrToken& token, ZrXmlObject* object) {
  addRegistration(token, object, ZrXmlRegistrationTable::ATTRIBUTE, true);
}

// Whoever asks for a map may change it: the object keeps maps of its own from then on.
ZrXmlCompoundType::ComponentMap& ZrXmlCompoundType::componentMap() const { return *createComponentMap(); }

ZrXmlCompoundType::ComponentMap& ZrXmlCompoundType::attributeComponentMap() { return *createAttributeComponentMap(); }

ZrXmlCompoundType::SpecialDescriptorMap& ZrXmlCompoundType::specialDescriptorMap() {
  return *createSpecialDescriptorMap();
}

ZrBoolean ZrXmlCompoundType::hasChildren() const {
  if (m_theSharedRegistrations) return !m_theSharedRegistrations->elements().empty();
  return m_theComponentMap && !m_theComponentMap->empty();
}

ZrBoolean ZrXmlCompoundType::hasAttributes() const {
  if (m_theSharedRegistrations) return !m_theSharedRegistrations->attributes().empty();
  return m_theAttributeComponentMap && !m_theAttributeComponentMap->empty();
}

ZrXmlCompoundType::ComponentMap* ZrXmlCompoundType::newComponentMap() const { return new ComponentMap; }

ZrXmlCompoundType::SpecialDescriptorMap* ZrXmlCompoundType::newSpecialDescriptorMap() {
  return new SpecialDescriptorMap;
}

ZrXmlCompoundType::ComponentMap* ZrXmlCompoundType::createComponentMap() const {
  keepOwnMaps();
  if (!m_theComponentMap) m_theComponentMap.reset(newComponentMap());
  return m_theComponentMap.get();
}

ZrXmlCompoundType::ComponentMap* ZrXmlCompoundType::createAttributeComponentMap() {
  keepOwnMaps();
  if (!m_theAttributeComponentMap) m_theAttributeComponentMap.reset(newComponentMap());
  return m_theAttributeComponentMap.get();
}

ZrXmlCompoundType::SpecialDescriptorMap* ZrXmlCompoundType::createSpecialDescriptorMap() {
  keepOwnMaps();
  if (!m_theSpecialDescriptorMap) m_theSpecialDescriptorMap.reset(newSpecialDescriptorMap());
  return m_theSpecialDescriptorMap.get();
}

ZrBoolean ZrXmlCompoundType::isReadOnlyComponent(const ZrToken& token) const {
  return hasSpecialCode(token, m_theReadOnlyElementCode);
}

ZrBoolean ZrXmlCompoundType::isReadOnlyAttribute(const ZrToken& token) const {
  return hasSpecialCode(token, m_theReadOnlyAttributeCode);
}

bool ZrXmlCompoundType::hasSpecialCode(const ZrToken& token, ZrU32 code) const {
  if (m_theSharedRegistrations) return m_theSharedRegistrations->hasMark(token, code);
  if (!m_theSpecialDescriptorMap) return false;
  SpecialDescriptorMap::const_iterator entry = m_theSpecialDescriptorMap->find(token);
  return entry != m_theSpecialDescriptorMap->end() && entry->second == code;
}

void ZrXmlCompoundType::forEachComponent(const ComponentFunction& function) const {
  ensureXmlInit();
  forEachRegistered(ZrXmlRegistrationTable::ATTRIBUTE, [this, &function](const ZrToken& token, const ZrXmlObject* component) {
    function(token, component, ATTRIBUTE_COMPONENT, isReadOnlyAttribute(token));
  });
  forEachRegistered(ZrXmlRegistrationTable::ELEMENT, [this, &function](const ZrToken& token, const ZrXmlObject* component) {
    function(token, component, ELEMENT_COMPONENT, isReadOnlyComponent(token));
  });
}
