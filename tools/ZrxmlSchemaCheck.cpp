// zrxml check --schema XSD: validation of documents against an XML Schema with libxml2's validator.
// The tool links libxml2 when the build finds it; the library never needs it. Without it the option
// reports that it is unavailable.
#include "ZrxmlSchemaTree.h"
#include "ZrxmlTool.h"

#include <ZrPrint.h>

#ifdef ZR_HAVE_LIBXML2
#include <libxml/parser.h>
#include <libxml/xmlerror.h>
#include <libxml/xmlschemas.h>
#endif

namespace zrxml {

#ifdef ZR_HAVE_LIBXML2

namespace {

const char* faultKind(int domain) {
  if (domain == XML_FROM_SCHEMASV) return "schema violation.";
  if (domain == XML_FROM_SCHEMASP) return "fault in the schema.";
  return "document not valid.";
}

// Each violation or schema fault as a fault of the tool: the validator's text, its file and line. The
// validator names no file while it streams a document: the file being validated is named then.
void reportValidatorError(void* context, xmlErrorPtr error) {
  if (!error || error->level == XML_ERR_NONE || error->level == XML_ERR_WARNING) return;
  SchemaValidator::Faults& faults = *static_cast<SchemaValidator::Faults*>(context);
  std::string text = error->message ? error->message : "unknown fault";
  while (!text.empty() && (text.back() == '\n' || text.back() == ' ')) text.pop_back();
  const char* file = error->file && *error->file ? error->file : faults.file.c_str();
  std::string treeFile;
  int treeLine = 0;
  if (faults.tree && error->node && faults.tree->positionOf(error->node, treeFile, treeLine)) {
    file = treeFile.c_str();
    error->line = treeLine;
  }
  if (error->line > 0)
    Zr::Print::instance().write(Zr::PrintError, "zrxml Error: %s\n\t%s\n\tFile: %s\n\tLine: %d\n",
                                faultKind(error->domain), text.c_str(), file, error->line);
  else
    Zr::Print::instance().write(Zr::PrintError, "zrxml Error: %s\n\t%s\n\tFile: %s\n", faultKind(error->domain),
                                text.c_str(), file);
  ++faults.count;
}

}  // namespace

SchemaValidator::SchemaValidator(const std::string& schemaPath) {
  m_theFaults.file = schemaPath;
  xmlSetStructuredErrorFunc(&m_theFaults, reportValidatorError);
  xmlSchemaParserCtxtPtr parser = xmlSchemaNewParserCtxt(schemaPath.c_str());
  if (parser) {
    m_theSchema = xmlSchemaParse(parser);
    xmlSchemaFreeParserCtxt(parser);
  }
  if (!m_theSchema && m_theFaults.count == 0)
    Zr::Print::instance().write(Zr::PrintError, "zrxml Error: the schema cannot be used.\n\tFile: %s\n", schemaPath.c_str());
}

SchemaValidator::~SchemaValidator() {
  if (m_theSchema) xmlSchemaFree(static_cast<xmlSchemaPtr>(m_theSchema));
  xmlSetStructuredErrorFunc(nullptr, nullptr);
}

bool SchemaValidator::available() { return true; }

long SchemaValidator::validate(const std::string& path) {
  if (!m_theSchema) return -1;
  m_theFaults.count = 0;
  m_theFaults.file = path;
  xmlSchemaValidCtxtPtr context = xmlSchemaNewValidCtxt(static_cast<xmlSchemaPtr>(m_theSchema));
  if (!context) return -1;
  xmlSchemaSetValidStructuredErrors(context, reportValidatorError, &m_theFaults);
  // The document is parsed without network access; entities are not substituted.
  const int result = xmlSchemaValidateFile(context, path.c_str(), XML_PARSE_NONET);
  xmlSchemaFreeValidCtxt(context);
  if (result < 0) return -1;
  if (result > 0 && m_theFaults.count == 0) m_theFaults.count = 1;  // a fault the validator did not describe
  return static_cast<long>(m_theFaults.count);
}

long SchemaValidator::validate(const std::string& path, const SchemaTree& tree) {
  if (!m_theSchema || !tree.document()) return -1;
  m_theFaults.count = 0;
  m_theFaults.file = path;
  m_theFaults.tree = &tree;
  xmlSchemaValidCtxtPtr context = xmlSchemaNewValidCtxt(static_cast<xmlSchemaPtr>(m_theSchema));
  if (!context) return -1;
  xmlSchemaSetValidStructuredErrors(context, reportValidatorError, &m_theFaults);
  const int result = xmlSchemaValidateDoc(context, static_cast<xmlDocPtr>(tree.document()));
  xmlSchemaFreeValidCtxt(context);
  m_theFaults.tree = nullptr;
  if (result < 0) return -1;
  if (result > 0 && m_theFaults.count == 0) m_theFaults.count = 1;
  return static_cast<long>(m_theFaults.count);
}

#else

long SchemaValidator::validate(const std::string&, const SchemaTree&) { return -1; }

SchemaValidator::SchemaValidator(const std::string&) {
  Zr::Print::instance().write(Zr::PrintError,
                              "zrxml Error: --schema is unavailable: this zrxml was built without libxml2.\n");
}
SchemaValidator::~SchemaValidator() = default;
bool SchemaValidator::available() { return false; }
long SchemaValidator::validate(const std::string&) { return -1; }

#endif

}  // namespace zrxml
