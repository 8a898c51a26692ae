#ifndef ZR_BASE_EXPRESSION_TREE_ELEMENT_H
#define ZR_BASE_EXPRESSION_TREE_ELEMENT_H

#include <ZrXmlCompoundType.h>

class ZrXmlBaseVariableCompoundType;

// The base of the nodes of a tree whose node classes are chosen by element name (an expression tree,
// say). A node remembers the variable compound that holds its tree, its container, so that it can
// create its own children through the container's factory: the creators a document's plug-in
// libraries added reach every level of the tree, not only the top.
//
// The container is not owned and may be null (a node built on its own). A copy points at the same
// container as its source; a container that copies a whole tree points the copied nodes at itself.
class ZrBaseExpressionTreeElement : public ZrXmlCompoundType {
 public:
  ZrBaseExpressionTreeElement();
  explicit ZrBaseExpressionTreeElement(const ZrXmlBaseVariableCompoundType* container);
  ZrBaseExpressionTreeElement(const ZrBaseExpressionTreeElement& other);
  ZrBaseExpressionTreeElement& operator=(const ZrBaseExpressionTreeElement& other);
  ~ZrBaseExpressionTreeElement() override;

  // Equal registrations, and either both or neither in a container; which container is not compared.
  bool operator==(const ZrBaseExpressionTreeElement& other) const;
  bool operator!=(const ZrBaseExpressionTreeElement& other) const { return !(*this == other); }

  // Nodes register nothing by default; node classes with members of their own override this.
  void registerComponents() override;

  virtual const ZrXmlBaseVariableCompoundType* container() const;
  virtual void setContainer(const ZrXmlBaseVariableCompoundType* container);

 private:
  const ZrXmlBaseVariableCompoundType* m_theContainer;
};

#endif
