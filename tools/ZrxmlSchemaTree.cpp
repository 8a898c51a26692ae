#include "ZrxmlSchemaTree.h"

#include <ZrXmlFileReader.h>
#include <ZrXmlReader.h>

#include <algorithm>
#include <fstream>

#ifdef ZR_HAVE_LIBXML2
#include <libxml/tree.h>
#endif

namespace zrxml {

#ifdef ZR_HAVE_LIBXML2

namespace {

// The namespace of an xsi:schemaLocation in the first tag of the document that carries one: the first
// word of its value. The reader hands out no "xsi:" attribute, so the file's start is read for it.
std::string schemaLocationNamespace(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  std::string start(65536, '\0');
  in.read(&start[0], static_cast<std::streamsize>(start.size()));
  start.resize(static_cast<std::size_t>(std::max<std::streamsize>(in.gcount(), 0)));
  const std::size_t at = start.find("schemaLocation");
  if (at == std::string::npos) return std::string();
  std::size_t quote = start.find_first_of("\"'", at);
  if (quote == std::string::npos) return std::string();
  std::size_t first = start.find_first_not_of(" \t\r\n", quote + 1);
  std::size_t end = first == std::string::npos ? first : start.find_first_of(" \t\r\n\"'", first);
  if (end == std::string::npos) return std::string();
  return start.substr(first, end - first);
}

const xmlChar* xmlText(const std::string& text) { return reinterpret_cast<const xmlChar*>(text.c_str()); }

}  // namespace

SchemaTree::SchemaTree(const std::string& path) : m_theSchemaNamespace(schemaLocationNamespace(path)) {}

SchemaTree::~SchemaTree() {
  if (m_theDocument) xmlFreeDoc(static_cast<xmlDocPtr>(m_theDocument));
}

void SchemaTree::openElement(ZrXmlReader& reader, bool empty) {
  const std::string name = reader.element().tokenText();
  if (name.empty()) return;
  if (!m_theDocument) {
    xmlDocPtr document = xmlNewDoc(reinterpret_cast<const xmlChar*>("1.0"));
    m_theDocument = document;
    const auto declared = reader.currentFileReader()->namespacesInForce(0);
    const auto defaultNamespace = declared.find(std::string());
    m_theDefaultNamespace = defaultNamespace != declared.end();
    const std::string uri = m_theDefaultNamespace ? defaultNamespace->second : m_theSchemaNamespace;
    xmlNodePtr root = xmlNewDocNode(document, nullptr, xmlText(name), nullptr);
    xmlDocSetRootElement(document, root);
    if (!uri.empty()) {
      m_theNamespace = xmlNewNs(root, xmlText(uri), nullptr);
      xmlSetNs(root, static_cast<xmlNsPtr>(m_theNamespace));
    }
    m_theCurrent = root;
  } else if (m_theCurrent) {
    xmlNodePtr node = xmlNewDocNode(static_cast<xmlDocPtr>(m_theDocument), static_cast<xmlNsPtr>(m_theNamespace),
                                    xmlText(name), nullptr);
    xmlAddChild(static_cast<xmlNodePtr>(m_theCurrent), node);
    m_theCurrent = node;
  } else {
    return;  // a second root: a fault of the document, reported by the reader
  }
  xmlNodePtr node = static_cast<xmlNodePtr>(m_theCurrent);
  while (reader.remainingNumOfAttributes() > 0) {
    const std::string attribute = reader.attributeName().tokenText();
    const std::string value = reader.attributeValue();
    xmlNewProp(node, xmlText(attribute), xmlText(value));
  }
  if (reader.currentFileReader()->nilElement()) markNil(node);
  const int line = reader.lineCountOfFile();
  node->line = static_cast<unsigned short>(std::min(line, 65535));
  if (m_theFiles.empty() || m_theFiles.back() != reader.filename()) m_theFiles.push_back(reader.filename());
  m_thePositions[node] = {m_theFiles.size() - 1, line};
  if (empty) m_theCurrent = node->parent && node->parent->type == XML_ELEMENT_NODE ? node->parent : nullptr;
}

// xsi:nil="true" on the node, as the document wrote it: a nil element of a value type is valid only so.
void SchemaTree::markNil(void* element) {
  xmlNodePtr node = static_cast<xmlNodePtr>(element);
  if (!m_theSchemaInstance) {
    xmlNodePtr root = xmlDocGetRootElement(static_cast<xmlDocPtr>(m_theDocument));
    m_theSchemaInstance = xmlNewNs(root, xmlText(ZrXmlFileReader::m_schemaInstanceNamespace), xmlText("xsi"));
  }
  xmlNewNsProp(node, static_cast<xmlNsPtr>(m_theSchemaInstance), xmlText("nil"), xmlText("true"));
}

void SchemaTree::onEvent(ZrXmlReader& reader, int mode) {
  if (reader.depth() > 1) m_theIncludes = true;
  if (mode == 1 || mode == 3) {
    openElement(reader, mode == 3);
    return;
  }
  if ((mode != 2 && mode != 4) || !m_theCurrent) return;
  xmlNodePtr node = static_cast<xmlNodePtr>(m_theCurrent);
  if (mode == 4) {
    const std::string content = reader.content();
    xmlNodeAddContent(node, xmlText(content));
  }
  m_theCurrent = node->parent && node->parent->type == XML_ELEMENT_NODE ? node->parent : nullptr;
}

#else

SchemaTree::SchemaTree(const std::string&) {}
SchemaTree::~SchemaTree() = default;
void SchemaTree::openElement(ZrXmlReader&, bool) {}
void SchemaTree::markNil(void*) {}
void SchemaTree::onEvent(ZrXmlReader&, int) {}

#endif

bool SchemaTree::positionOf(const void* node, std::string& file, int& line) const {
  const auto found = m_thePositions.find(node);
  if (found == m_thePositions.end()) return false;
  file = m_theFiles[found->second.first];
  line = found->second.second;
  return true;
}

}  // namespace zrxml
