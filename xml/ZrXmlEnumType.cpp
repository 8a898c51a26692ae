#include "ZrXmlEnumType.h"

#include "ZrPrint.h"
#include "ZrXmlObjectVisitor.h"
#include "ZrXmlReader.h"
#include "ZrXmlSchema.h"
#include "ZrXmlWriter.h"

#include <typeinfo>

template class ZrXmlEnumType<bool>;
template class ZrXmlEnumType<short>;
template class ZrXmlEnumType<unsigned short>;
template class ZrXmlEnumType<int>;
template class ZrXmlEnumType<unsigned int>;
template class ZrXmlEnumType<unsigned char>;
template class ZrXmlEnumType<ZrNonNegReal>;
