// Includes headers by class name from the installed package and links the installed libraries.
#include <ZrPrint.h>
#include <ZrToken.h>
#include <ZrXmlWriter.h>

#include <sstream>

int main() {
  std::ostringstream out;
  ZrXmlWriter writer("consumer.xml", out);
  writer.writeStartTag(ZrXml::ns + "consumer");
  writer.writeEndTag();
  Zr::Print::instance().write(Zr::PrintInfo, "%s", out.str().c_str());
  return out.str().find("consumer") == std::string::npos ? 1 : 0;
}
