#include "ZrBaseXmlFactory.h"

// Defined here so that the class's type information and virtual table live in the library.
ZrBaseXmlFactory::~ZrBaseXmlFactory() = default;
