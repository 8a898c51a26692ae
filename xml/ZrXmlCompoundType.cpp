#include "ZrXmlCompoundType.h"

#include "ZrPrint.h"
#include "ZrXmlObjectVisitor.h"
#include "ZrXmlReader.h"
#include "ZrXmlSchema.h"
#include "ZrXmlSchemaElementType.h"
#include "ZrXmlWriter.h"

#include <typeinfo>

namespace {
const int startTagMode = 1;
const int emptyElementMode = 3;

bool isElementStart(int mode) { return mode == startTagMode || mode == emptyElementMode; }
}  // namespace

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
  if (m_theSpecialDescriptorMap && other.m_theSpecialDescriptorMap &&
      *m_theSpecialDescriptorMap != *other.m_theSpecialDescriptorMap)
    result = false;
  if (!m_theComponentMap || !other.m_theComponentMap || !result) return result;
  if (m_theComponentMap->size() != other.m_theComponentMap->size()) return false;
  // Only the registered tokens are compared; the members' values are the business of equality().
  auto mine = m_theComponentMap->begin();
  for (const auto& theirs : *other.m_theComponentMap) {
    if (!(mine->first == theirs.first)) return false;
    ++mine;
  }
  return result;
}

void ZrXmlCompoundType::accept(ZrXmlObjectVisitor* visitor) const {
  if (visitor) visitor->visit(this);
}

ZrBoolean ZrXmlCompoundType::xmlInit() {
  if (ZrXmlObject::xmlInit()) registerComponents();
  return true;
}

ZrBoolean ZrXmlCompoundType::read(ZrXmlReader& reader) {
  if (!readAttributes(reader)) return false;
  return readElements(reader);
}

ZrBoolean ZrXmlCompoundType::readAttributes(ZrXmlReader& reader) {
  ZrBoolean result = ZrXmlObject::read(reader);
  if (!result) return result;
  const ZrU32 count = reader.remainingNumOfAttributes();
  for (ZrU32 round = 0; round < count && reader.remainingNumOfAttributes() != 0; ++round) {
    const ZrU32 before = reader.remainingNumOfAttributes();
    ZrToken name = reader.attributeName();
    readAttributeFromToken(name, reader);
    // The reader always offers the first unread attribute: one that nobody took (unknown, or held by
    // a component that reads no attributes) is dropped, so that the next round sees the next one.
    if (reader.remainingNumOfAttributes() == before) reader.attributeValue(name);
  }
  return result;
}

// Unknown and unreadable children never stop the read: each is reported and its subtree skipped.
// Children missing from the document leave their members as they were.
ZrBoolean ZrXmlCompoundType::readElements(ZrXmlReader& reader) {
  if (reader.mode() == emptyElementMode) return true;
  if (!reader.enterObject()) return true;
  int mode = reader.readXml();
  while (isElementStart(mode)) {
    ZrToken child = reader.element();
    if (!readValueFromToken(child, reader)) reader.nextMatchingEndTag();
    mode = reader.readXml();
  }
  reader.leaveObject();
  return true;
}

ZrBoolean ZrXmlCompoundType::readAttributeFromToken(const ZrToken& token, ZrXmlReader& reader) {
  ComponentMap& attributes = attributeComponentMap();
  ComponentMap::iterator entry = attributes.find(token);
  if (entry == attributes.end()) {
    Zr::Print::instance().write(Zr::PrintError, "Bad attribute token: %s on line %d\n", token.c_str(),
                                reader.lineCountOfFile());
    return false;
  }
  if (entry->second) entry->second->readAttribute(reader);
  return true;
}

// A token registered with a null object is skipped like an unknown one, but without a report: the
// registration itself says that the element is known and deliberately not kept.
ZrBoolean ZrXmlCompoundType::readValueFromToken(const ZrToken& token, ZrXmlReader& reader) {
  ComponentMap& components = componentMap();
  ComponentMap::iterator entry = components.find(token);
  if (entry == components.end()) return readValueFromSpecialToken(token, reader);
  if (!entry->second) return false;
  entry->second->read(reader);
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
  for (const auto& entry : *m_theAttributeComponentMap) {
    if (!entry.second || isReadOnlyAttribute(entry.first)) continue;
    writer.setAttributeName(entry.first);
    entry.second->write(writer);
  }
  return result;
}

// Single values are always written; structured components still in their default state are left
// out unless the writer asks for default data.
ZrBoolean ZrXmlCompoundType::writeElements(ZrXmlWriter& writer) const {
  if (!hasChildren()) return true;
  const bool writeDefaults = writer.writeDefaultDataFlag();
  for (const auto& entry : *m_theComponentMap) {
    const ZrXmlObject* component = entry.second;
    if (!component || isReadOnlyComponent(entry.first)) continue;
    if (!writeDefaults && !component->isBasicType() && component->equalsDefault()) continue;
    writeElement(writer, entry.first, *component);
  }
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
  for (const auto& entry : *m_theAttributeComponentMap) {
    if (!entry.second) continue;
    schema.setAttributeName(entry.first);
    entry.second->writeSchema(schema);
  }
  return result;
}

// A component's type is described once: the generator answers whether it already holds the type
// of that element, named by the component's run-time type.
ZrBoolean ZrXmlCompoundType::writeSchemaElements(ZrXmlSchema& schema) const {
  if (!hasChildren()) return true;
  schema.openGroup();
  for (const auto& entry : *m_theComponentMap) {
    const ZrXmlObject* component = entry.second;
    if (!component) continue;
    schema.writeStartTag(entry.first, ZrXmlSchemaElementType::XML_STARTTAG_OPTION);
    const char* typeName = typeid(*component).name();
    if (*typeName == '*') ++typeName;
    if (!schema.isRegistered(entry.first, typeName)) {
      component->writeSchema(schema);
      schema.writeEndTag();
    }
  }
  schema.closeGroup();
  return true;
}

void ZrXmlCompoundType::registerComponent(const ZrToken& token, ZrXmlObject* object) {
  (*createComponentMap())[token] = object;
}

void ZrXmlCompoundType::registerComponentReadOnly(const ZrToken& token, ZrXmlObject* object) {
  (*createComponentMap())[token] = object;
  (*createSpecialDescriptorMap())[token] = m_theReadOnlyElementCode;
}

void ZrXmlCompoundType::registerAttributeComponent(const ZrToken& token, ZrXmlObject* object) {
  (*createAttributeComponentMap())[token] = object;
}

void ZrXmlCompoundType::registerAttributeComponentReadOnly(const ZrToken& token, ZrXmlObject* object) {
  (*createAttributeComponentMap())[token] = object;
  (*createSpecialDescriptorMap())[token] = m_theReadOnlyAttributeCode;
}

ZrXmlCompoundType::ComponentMap& ZrXmlCompoundType::componentMap() const { return *createComponentMap(); }

ZrXmlCompoundType::ComponentMap& ZrXmlCompoundType::attributeComponentMap() { return *createAttributeComponentMap(); }

ZrXmlCompoundType::SpecialDescriptorMap& ZrXmlCompoundType::specialDescriptorMap() {
  return *createSpecialDescriptorMap();
}

ZrBoolean ZrXmlCompoundType::hasChildren() const { return m_theComponentMap && !m_theComponentMap->empty(); }

ZrBoolean ZrXmlCompoundType::hasAttributes() const {
  return m_theAttributeComponentMap && !m_theAttributeComponentMap->empty();
}

ZrXmlCompoundType::ComponentMap* ZrXmlCompoundType::newComponentMap() const { return new ComponentMap; }

ZrXmlCompoundType::SpecialDescriptorMap* ZrXmlCompoundType::newSpecialDescriptorMap() {
  return new SpecialDescriptorMap;
}

ZrXmlCompoundType::ComponentMap* ZrXmlCompoundType::createComponentMap() const {
  if (!m_theComponentMap) m_theComponentMap.reset(newComponentMap());
  return m_theComponentMap.get();
}

ZrXmlCompoundType::ComponentMap* ZrXmlCompoundType::createAttributeComponentMap() {
  if (!m_theAttributeComponentMap) m_theAttributeComponentMap.reset(newComponentMap());
  return m_theAttributeComponentMap.get();
}

ZrXmlCompoundType::SpecialDescriptorMap* ZrXmlCompoundType::createSpecialDescriptorMap() {
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
  if (!m_theSpecialDescriptorMap) return false;
  SpecialDescriptorMap::const_iterator entry = m_theSpecialDescriptorMap->find(token);
  return entry != m_theSpecialDescriptorMap->end() && entry->second == code;
}

void ZrXmlCompoundType::forEachComponent(const ComponentFunction& function) const {
  ensureXmlInit();
  if (hasAttributes())
    for (const auto& entry : *m_theAttributeComponentMap)
      function(entry.first, entry.second, ATTRIBUTE_COMPONENT, isReadOnlyAttribute(entry.first));
  if (hasChildren())
    for (const auto& entry : *m_theComponentMap)
      function(entry.first, entry.second, ELEMENT_COMPONENT, isReadOnlyComponent(entry.first));
}
