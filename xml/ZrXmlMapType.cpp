#include "ZrXmlMapType.h"

#include "ZrPrint.h"
#include "ZrXmlReader.h"
#include "ZrXmlSchema.h"
#include "ZrXmlSchemaElementType.h"
#include "ZrXmlWriter.h"

#define B(T) ZrXmlBasicType<T>
template class ZrXmlMapType<B(std::string), B(bool)>;
template class ZrXmlMapType<B(std::string), B(int)>;
template class ZrXmlMapType<B(std::string), B(unsigned int)>;
template class ZrXmlMapType<B(std::string), B(double)>;
template class ZrXmlMapType<B(std::string), B(std::string)>;
template class ZrXmlMapType<B(std::string), ZrXmlMapType<B(std::string), B(bool)>>;
template class ZrXmlMapType<B(std::string), ZrXmlMapType<B(std::string), B(double)>>;
template class ZrXmlMapType<B(std::string), ZrXmlVectorType<B(double)>>;
template class ZrXmlMapType<B(std::string), ZrXmlVectorType<B(unsigned int)>>;
template class ZrXmlMapType<B(unsigned int), B(std::string)>;
template class ZrXmlMapType<B(unsigned int), B(unsigned int)>;
template class ZrXmlMapType<B(unsigned int), ZrXmlSetType<B(unsigned int)>>;
#undef B
