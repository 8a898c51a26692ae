#include "ZrXmlPairType.h"

#include "ZrPrint.h"
#include "ZrXmlReader.h"
#include "ZrXmlSchema.h"
#include "ZrXmlSchemaElementType.h"
#include "ZrXmlWriter.h"

template class ZrXmlPairType<ZrXmlBasicType<double>, ZrXmlBasicType<double>>;
template class ZrXmlPairType<ZrXmlBasicType<std::string>, ZrXmlBasicType<std::string>>;
template class ZrXmlPairType<ZrXmlBasicType<std::string>, ZrXmlBasicType<unsigned int>>;
template class ZrXmlPairType<ZrXmlBasicType<unsigned int>, ZrXmlBasicType<unsigned int>>;
template class ZrXmlPairType<ZrXmlVector, ZrXmlVector>;
