// zrExpressionExtras.zrp: differences and quotients for formulas. A formula document that names this
// library in its "addLibraries" element may use them anywhere in its tree:
//
//   <difference> <variable name="a"/> <constant value="1"/> </difference>      a - 1
//   <quotient> <constant value="3600"/> <variable name="t"/> </quotient>       3600 / t
#include <ZrCellNamespace.h>
#include <ZrOperationTerm.h>
#include <ZrXmlBaseVariableCompoundType.h>

namespace {

double subtract(double left, double right) { return left - right; }
double divide(double left, double right) { return left / right; }

const ZrOperationTerm::Operator theDifference = {"difference", "-", 0.0, 1, false, subtract};
const ZrOperationTerm::Operator theQuotient = {"quotient", "/", 1.0, 2, false, divide};

ZrXmlObject* createDifference() { return new ZrOperationTerm(theDifference); }
ZrXmlObject* createQuotient() { return new ZrOperationTerm(theQuotient); }

// One row per class; the empty token after the last row ends the list.
struct ClassEntry {
  ZrToken token;
  ZrXmlBaseVariableCompoundType::Creator creator;
};
const ClassEntry theClasses[] = {
    {ZrCell::element(theDifference.name), createDifference},
    {ZrCell::element(theQuotient.name), createQuotient},
    {ZrToken(), nullptr},
};
const ZrU32 theLastRow = sizeof(theClasses) / sizeof(theClasses[0]) - 1;

const ClassEntry& row(ZrU32 index) { return theClasses[index < theLastRow ? index : theLastRow]; }

}  // namespace

ZR_PLUGIN_ENTRY_POINT const ZrToken& getClassToken(ZrU32 index) { return row(index).token; }

ZR_PLUGIN_ENTRY_POINT ZrXmlBaseVariableCompoundType::Creator getCreator(ZrU32 index) { return row(index).creator; }
