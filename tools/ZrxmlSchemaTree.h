#ifndef ZRXML_SCHEMA_TREE_H
#define ZRXML_SCHEMA_TREE_H

#include <cstddef>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

class ZrXmlReader;

namespace zrxml {

// A document as the library reads it, built from the reader's events for the schema validator: include
// elements replaced by the documents they name, every element in the root's namespace (the root's default
// namespace, or else the namespace its xsi:schemaLocation names, as the toolkit's form writes it), and
// each element's file and line kept, so that a violation names the document it stands in. Validated in
// place of the file when the file alone would not do: a document in the toolkit's form (no default
// namespace on its root) or one that includes others. Without libxml2 nothing is built.
class SchemaTree {
 public:
  explicit SchemaTree(const std::string& path);
  ~SchemaTree();
  SchemaTree(const SchemaTree&) = delete;
  SchemaTree& operator=(const SchemaTree&) = delete;

  void onEvent(ZrXmlReader& reader, int mode);

  bool needed() const { return m_theDocument && (m_theIncludes || !m_theDefaultNamespace); }
  void* document() const { return m_theDocument; }  // libxml2's document
  // The file and line of an element of the tree; false for a node it does not know.
  bool positionOf(const void* node, std::string& file, int& line) const;

 private:
  void openElement(ZrXmlReader& reader, bool empty);
  void markNil(void* element);

  std::string m_theSchemaNamespace;  // from the root's xsi:schemaLocation
  void* m_theDocument = nullptr;
  void* m_theNamespace = nullptr;    // the root's namespace, which every element is put in
  void* m_theCurrent = nullptr;      // the open element
  void* m_theSchemaInstance = nullptr;  // the xsi namespace, declared on the root once a nil element needs it
  bool m_theIncludes = false;
  bool m_theDefaultNamespace = false;
  std::vector<std::string> m_theFiles;
  std::unordered_map<const void*, std::pair<std::size_t, int>> m_thePositions;  // file index, line
};

}  // namespace zrxml

#endif
