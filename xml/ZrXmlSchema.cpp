#include "ZrXmlSchema.h"

// Placeholder generator: it accepts every call of the writer's schema feed and records nothing, so
// that writers with the schema writer flag set already run the same code path they will run once
// the generator builds its element and type records. Nothing is registered and writing succeeds
// without producing a file.

ZrXmlSchema::ZrXmlSchema() = default;

ZrXmlSchema::ZrXmlSchema(const ZrXmlSchema&) = default;

ZrXmlSchema& ZrXmlSchema::operator=(const ZrXmlSchema&) = default;

ZrXmlSchema::~ZrXmlSchema() = default;

void ZrXmlSchema::writeStartTag(const ZrToken&, int) {}

void ZrXmlSchema::writeStartTagUsingParentNamespace(const ZrToken&, int) {}

void ZrXmlSchema::setAttributeName(const ZrToken&) {}

void ZrXmlSchema::setType(const std::type_info&) {}

void ZrXmlSchema::writeEndTag() {}

void ZrXmlSchema::openGroup() {}

void ZrXmlSchema::closeGroup() {}

ZrBoolean ZrXmlSchema::isRegistered(const ZrToken&, const std::string&) { return false; }

ZrBoolean ZrXmlSchema::write(std::string) { return true; }
