#include "ZrFormula.h"

#include "ZrCellNamespace.h"
#include "ZrConstantTerm.h"
#include "ZrOperationTerm.h"
#include "ZrVariableTerm.h"

#include <ZrPrint.h>
#include <ZrXmlReader.h>
#include <ZrXmlWriter.h>

#include <limits>

namespace {
std::unique_ptr<ZrTerm> copyOf(const ZrTerm* term) {
  return std::unique_ptr<ZrTerm>(term ? static_cast<ZrTerm*>(term->clone()) : nullptr);
}
}  // namespace

ZrFormula::ZrFormula() = default;

ZrFormula::ZrFormula(const ZrFormula& other) : ZrXmlBaseVariableCompoundType(other) { setTerm(copyOf(other.term())); }

ZrFormula& ZrFormula::operator=(const ZrFormula& other) {
  if (this != &other) {
    ZrXmlBaseVariableCompoundType::operator=(other);
    setTerm(copyOf(other.term()));
  }
  return *this;
}

ZrFormula::~ZrFormula() = default;

ZrToken ZrFormula::rootToken() { return ZrCell::element("formula"); }

void ZrFormula::registerComponentCreators() {
  registerComponentCreator(ZrCell::element("constant"), ZrConstantTerm::create);
  registerComponentCreator(ZrCell::element("variable"), ZrVariableTerm::create);
  registerComponentCreator(ZrCell::element("sum"), ZrOperationTerm::createSum);
  registerComponentCreator(ZrCell::element("product"), ZrOperationTerm::createProduct);
}

void ZrFormula::setTerm(std::unique_ptr<ZrTerm> term) {
  m_theTerm = std::move(term);
  if (m_theTerm) m_theTerm->adopt(this, 1);
}

ZrBoolean ZrFormula::readVariableComponent(const ZrToken& childToken, ZrXmlReader& reader) {
  if (readLibraryList(childToken, reader)) return true;
  std::unique_ptr<ZrXmlObject> created(newObjectFromToken(childToken));
  ZrTerm* term = dynamic_cast<ZrTerm*>(created.get());
  if (!term) return false;
  if (m_theTerm) {
    Zr::Print::instance().write(Zr::PrintError,
                                "ZrFormula Error: a formula holds one term; %s skipped.\n\tFile: %s\n\tLine: %d\n",
                                childToken.c_str(), reader.filename().c_str(), reader.lineCountOfFile());
    skipElement(reader);
    return true;
  }
  created.release();
  setTerm(std::unique_ptr<ZrTerm>(term));
  term->read(reader);
  return true;
}

ZrBoolean ZrFormula::write(ZrXmlWriter& writer) const {
  const ZrBoolean result = ZrXmlBaseVariableCompoundType::write(writer);
  if (m_theTerm) {
    writer.writeStartTag(m_theTerm->token());
    m_theTerm->write(writer);
    writer.writeEndTag();
  }
  return result;
}

ZrBoolean ZrFormula::equality(const ZrXmlObject* other) const {
  const ZrFormula* formula = dynamic_cast<const ZrFormula*>(other);
  if (!formula || !addLibraries().equality(&formula->addLibraries())) return false;
  if (!m_theTerm || !formula->m_theTerm) return !m_theTerm && !formula->m_theTerm;
  return m_theTerm->equality(formula->m_theTerm.get());
}

double ZrFormula::evaluate(const ZrTerm::Bindings& bindings) const {
  if (m_theTerm) return m_theTerm->evaluate(bindings);
  Zr::Print::instance().write(Zr::PrintError, "ZrFormula Error: the formula holds no term.\n");
  return std::numeric_limits<double>::quiet_NaN();
}

std::string ZrFormula::text() const { return m_theTerm ? m_theTerm->text() : std::string(); }
