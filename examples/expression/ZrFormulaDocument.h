#ifndef ZR_FORMULA_DOCUMENT_H
#define ZR_FORMULA_DOCUMENT_H

#include "ZrFormula.h"

#include <istream>
#include <ostream>
#include <string>

// Reading and writing whole formula documents, and the demo that reads one, prints and evaluates it.
class ZrFormulaDocument {
 public:
  // Reads a formula document from a stream (the number of faults reported while reading goes to
  // *faultCount when it is given). False when it holds no "formula" root; faults inside it
  // are reported and skipped. The file name is used in messages only.
  static ZrBoolean read(std::istream& in, const std::string& filename, ZrFormula& formula, ZrU32* faultCount = nullptr);
  static ZrBoolean readFile(const std::string& filename, ZrFormula& formula, ZrU32* faultCount = nullptr);
  static ZrBoolean write(const ZrFormula& formula, std::ostream& out, const std::string& filename);

  // The sample document shipped with the example (it names the zrExpressionExtras plug-in).
  static std::string samplePath();

  // Reads the formula (the sample when filename is empty), then prints it and its value with the
  // given variable values to out:
  //   formula: 3600 * operators / (cycleTime + 2.5)
  //   value: 160
  // Returns a process exit status: 0 when the formula was read without a fault and has a number for its
  // value.
  static int demo(const std::string& filename, const ZrTerm::Bindings& bindings, std::ostream& out);
};

#endif
