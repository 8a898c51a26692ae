#include "ZrXmlSetType.h"

#include "ZrPrint.h"
#include "ZrXmlReader.h"
#include "ZrXmlSchema.h"
#include "ZrXmlSchemaElementType.h"
#include "ZrXmlVectorType.h"
#include "ZrXmlWriter.h"

template class ZrXmlSetType<ZrXmlBasicType<unsigned int>>;
