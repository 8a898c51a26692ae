#include "ZrXmlObject.h"

#include "ZrXmlBasicType.h"
#include "ZrXmlObjectVisitor.h"
#include "ZrXmlSchema.h"
#include "ZrXmlSchemaElementType.h"

// A copy counts as specified whatever its source's flags, and registers its own members later.
ZrXmlObject::ZrXmlObject(const ZrXmlObject&) : m_theFlags(m_theSpecifiedBit) {}

ZrXmlObject& ZrXmlObject::operator=(const ZrXmlObject&) {
  setFlag(m_theSpecifiedBit, true);
  return *this;
}

bool ZrXmlObject::operator==(const ZrXmlObject&) const { return true; }

void ZrXmlObject::accept(ZrXmlObjectVisitor* visitor) const {
  if (visitor) visitor->visit(this);
}

ZrBoolean ZrXmlObject::xmlInit() {
  setXmlInitialized(true);
  return true;
}

ZrBoolean ZrXmlObject::read(ZrXmlReader&) {
  if (!xmlInitialized()) xmlInit();
  setSpecified(true);
  return true;
}

ZrBoolean ZrXmlObject::readAttribute(ZrXmlReader& reader) { return read(reader); }

ZrBoolean ZrXmlObject::write(ZrXmlWriter&) const {
  ensureXmlInit();
  return true;
}

ZrBoolean ZrXmlObject::writeSchema(ZrXmlSchema&) const {
  ensureXmlInit();
  return true;
}

// Every root element carries a string-valued "version" attribute, so the schema declares it before
// the object's own attributes and elements. The generator's own failures do not reach the result.
ZrBoolean ZrXmlObject::createSchema(const std::string& filename, const ZrToken& rootToken) const {
  ZrXmlSchema schema;
  schema.writeStartTag(rootToken, ZrXmlSchemaElementType::XML_STARTTAG_OPTION);
  schema.setAttributeName(ZrXml::ZrVersionToken);
  ZrXmlBasicType<std::string> version;
  version.writeSchema(schema);
  writeSchema(schema);
  schema.writeEndTag();
  schema.write(filename);
  return true;
}

ZrBoolean ZrXmlObject::xmlInitialized() const { return (m_theFlags & m_theXmlInitializedBit) != 0; }

void ZrXmlObject::setXmlInitialized(ZrBoolean value) { setFlag(m_theXmlInitializedBit, value); }

ZrBoolean ZrXmlObject::specified() const { return (m_theFlags & m_theSpecifiedBit) != 0; }

void ZrXmlObject::setSpecified(ZrBoolean value) { setFlag(m_theSpecifiedBit, value); }

ZrBoolean ZrXmlObject::isBasicType() const { return false; }

// Compares with a fresh object of the same dynamic type. A class whose newObject gives nothing is
// compared with null, which its equality is expected to answer.
ZrBoolean ZrXmlObject::equalsDefault() const {
  ZrXmlObject* fresh = newObject();
  ZrBoolean result = equality(fresh);
  delete fresh;
  return result;
}

void ZrXmlObject::ensureXmlInit() const {
  // xmlInit only touches mutable state (the flag word and the registrations it guards).
  if (!xmlInitialized()) const_cast<ZrXmlObject*>(this)->xmlInit();
}

void ZrXmlObject::setFlag(std::uint8_t bit, ZrBoolean value) const {
  if (value)
    m_theFlags = static_cast<std::uint8_t>(m_theFlags | bit);
  else
    m_theFlags = static_cast<std::uint8_t>(m_theFlags & ~bit);
}
