#include "ZrXmlSchemaGlobalElementType.h"

ZrXmlSchemaGlobalElementType::ZrXmlSchemaGlobalElementType(const ZrXmlSchemaElement& element)
    : m_theElement(element) {}

void ZrXmlSchemaGlobalElementType::write(std::ostream& out, ZrXmlSchemaFile& file, const std::string& indent,
                                         const ZrXmlSchema& schema) const {
  m_theElement.writeGlobal(out, file, indent, schema);
}
