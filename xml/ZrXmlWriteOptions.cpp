#include "ZrXmlWriteOptions.h"

#ifndef ZR_STYLESHEET_URL
#define ZR_STYLESHEET_URL ""
#endif
#ifndef ZR_SCHEMA_URL
#define ZR_SCHEMA_URL ""
#endif

const char* ZrXmlWriteOptions::toolkitHeader() { return "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?>"; }

const char* ZrXmlWriteOptions::utf8Header() { return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>"; }

ZrXmlWriteOptions ZrXmlWriteOptions::standard() {
  return ZrXmlWriteOptions()
      .setHeader(utf8Header())
      .setNamespaceComplete(true)
      .setLosslessReals(true)
      .setEscapeMarkup(true);
}

ZrXmlWriteOptions& ZrXmlWriteOptions::setLanguageSelection(int language) {
  if (language != PLAIN_XML && language != TOOLKIT_MARKUP) return *this;
  m_theIndent = "  ";
  m_theHeader = toolkitHeader();
  if (language == PLAIN_XML) {
    m_theStyleSheet.clear();
    m_theSchemaInstance.clear();
    m_theSchemaLocation.clear();
    return *this;
  }
  m_theStyleSheet = std::string("<?xml-stylesheet type=\"text/xsl\" href=\"") + ZR_STYLESHEET_URL + "\"?>";
  m_theSchemaInstance = "xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\"";
  m_theSchemaLocation = ZR_SCHEMA_URL;
  return *this;
}

bool ZrXmlWriteOptions::operator==(const ZrXmlWriteOptions& other) const {
  return m_theIndent == other.m_theIndent && m_theHeader == other.m_theHeader &&
         m_theStyleSheet == other.m_theStyleSheet && m_theSchemaInstance == other.m_theSchemaInstance &&
         m_theSchemaLocation == other.m_theSchemaLocation && m_theWriteDefaultData == other.m_theWriteDefaultData &&
         m_theSchemaWriter == other.m_theSchemaWriter && m_theNamespaceComplete == other.m_theNamespaceComplete &&
         m_theLosslessReals == other.m_theLosslessReals && m_theEscapeMarkup == other.m_theEscapeMarkup &&
         m_thePortableSchemaFileNames == other.m_thePortableSchemaFileNames;
}
