#include "ZrFormulaDocument.h"

#include "ZrCellNamespace.h"

#include <ZrPrint.h>
#include <ZrXmlReader.h>
#include <ZrXmlWriter.h>

#include <cmath>
#include <fstream>

#ifndef ZR_FORMULA_SAMPLE
#define ZR_FORMULA_SAMPLE "formula.xml"
#endif

ZrBoolean ZrFormulaDocument::read(std::istream& in, const std::string& filename, ZrFormula& formula, ZrU32* faultCount) {
  ZrXmlReader reader(filename, in);
  const int mode = reader.readXml();
  const ZrToken root = ZrFormula::rootToken();
  const bool rootStarts = mode == ZrXmlMode::startTag || mode == ZrXmlMode::emptyElement;
  if (!rootStarts || reader.element().tokenText() != root.tokenText()) {
    Zr::Print::instance().write(Zr::PrintError, "ZrFormulaDocument Error: no %s root element.\n\tFile: %s\n",
                                root.c_str(), filename.c_str());
    return false;
  }
  const ZrBoolean result = formula.read(reader);
  if (faultCount) *faultCount = reader.faultCount();
  return result;
}

ZrBoolean ZrFormulaDocument::readFile(const std::string& filename, ZrFormula& formula, ZrU32* faultCount) {
  std::ifstream in(filename.c_str(), std::ios::in | std::ios::binary);
  if (!in) {
    Zr::Print::instance().write(Zr::PrintError, "ZrFormulaDocument Error: cannot open %s.\n", filename.c_str());
    return false;
  }
  return read(in, filename, formula, faultCount);
}

ZrBoolean ZrFormulaDocument::write(const ZrFormula& formula, std::ostream& out, const std::string& filename) {
  ZrXmlWriter writer(filename, out);
  writer.header(ZrFormula::rootToken(), ZrCell::uri());
  const ZrBoolean result = formula.write(writer);
  writer.writeEndTag();
  out.flush();
  return result && out.good();
}

std::string ZrFormulaDocument::samplePath() { return ZR_FORMULA_SAMPLE; }

int ZrFormulaDocument::demo(const std::string& filename, const ZrTerm::Bindings& bindings, std::ostream& out) {
  ZrFormula formula;
  ZrU32 faults = 0;
  if (!readFile(filename.empty() ? samplePath() : filename, formula, &faults)) return 1;
  const double value = formula.evaluate(bindings);
  out << "formula: " << formula.text() << "\nvalue: " << value << '\n';
  return std::isnan(value) || !out.good() || faults != 0 ? 1 : 0;
}
