#include "ZrXmlVector.h"

#include "ZrFileReplace.h"
#include "ZrNumberText.h"
#include "ZrPrint.h"
#include "ZrXmlObjectVisitor.h"
#include "ZrXmlReader.h"
#include "ZrXmlSchema.h"
#include "ZrXmlVectorVector.h"
#include "ZrXmlWriter.h"

#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <locale>
#include <string>
#include <typeinfo>

namespace {

const int startTagMode = 1;
const int endTagMode = 2;
const int emptyElementMode = 3;
const ZrU32 componentCount = 3;

// The component that an attribute name sets, or -1 for a name that is not x, y or z.
int componentIndex(const ZrToken& name) {
  const std::string& text = name.tokenText();
  if (text.size() != 1) return -1;
  switch (text[0]) {
    case 'x': return 0;
    case 'y': return 1;
    case 'z': return 2;
    default: return -1;
  }
}

// The array's name in a dump: the file name without its directory and without its extension.
std::string dumpName(const char* filename) {
  std::string name(filename);
  const std::string::size_type slash = name.find_last_of("/\\");
  if (slash != std::string::npos) name.erase(0, slash + 1);
  const std::string::size_type dot = name.rfind('.');
  if (dot != std::string::npos) name.erase(dot);
  return name;
}

}  // namespace

ZrXmlVector::ZrXmlVector(const ZrVector& value) : m_theValue(value) {}

ZrXmlVector::ZrXmlVector(double x, double y, double z) : m_theValue(x, y, z) {}

ZrXmlVector& ZrXmlVector::operator=(const ZrVector& value) {
  setValue(value);
  return *this;
}

ZrXmlVector::~ZrXmlVector() = default;

void ZrXmlVector::accept(ZrXmlObjectVisitor* visitor) const {
  if (visitor) visitor->visit(this);
}

ZrXmlObject* ZrXmlVector::clone() const { return new ZrXmlVector(*this); }

// The attributes are taken in the order the reader hands them out; the plausibility test looks at the
// component of the attribute's position, not at the one the attribute named. Reading does not go
// through the base read, so the object's flags are left as they were.
// Checked values: a component attribute is reported when its name is none of the components (wanted
// lists them) or its text is not a whole number.
void ZrXmlVector::checkComponent(ZrXmlReader& reader, const std::string& name, const std::string& text,
                                 const char* wanted) {
  double number = 0.0;
  if (wanted) reader.reportFaultyValue(true, name, text, wanted);
  else if (!ZrSTRING2DOUBLE(text, number)) reader.reportFaultyValue(true, name, text, "double");
}

ZrBoolean ZrXmlVector::read(ZrXmlReader& reader) {
  const ZrU32 count = reader.remainingNumOfAttributes();
  ZrBoolean result = true;
  if (count != componentCount) {
    Zr::Print::instance().write(Zr::PrintError, "ZrXmlVector Warning: 3 attributes needed, but %d were found.\n\tLine: %d",
                                static_cast<int>(count), reader.lineCountOfFile());
    result = false;
  }
  const int mode = reader.mode();
  if ((mode == startTagMode || mode == emptyElementMode) && count != 0) {
    double components[componentCount] = {m_theValue.x(), m_theValue.y(), m_theValue.z()};
    const bool checking = reader.options().checkValues();
    for (ZrU32 position = 0; position < count; ++position) {
      const int index = componentIndex(reader.attributeName());  // before the value: taking it removes the name
      const std::string name = checking ? reader.attributeName().tokenText() : std::string();
      const std::string& text = reader.attributeValue();
      if (checking) checkComponent(reader, name, text, index >= 0 ? nullptr : "component x, y or z");
      if (index >= 0) components[index] = std::strtod(text.c_str(), nullptr);
      if (position < componentCount && components[position] == 0.0 && (text.empty() || text[0] != '0')) result = false;
    }
    m_theValue.set(components[0], components[1], components[2]);
  }
  if (mode == startTagMode && reader.readXml() != endTagMode) {
    Zr::Print::instance().write(Zr::PrintError,
                                "ZrXmlVector Error: file not well formed.\n\tEnd tag needed.\n\tFile: %s\n\tLine: %d",
                                reader.filename().c_str(), reader.lineCountOfFile());
    result = false;
  }
  return result;
}

ZrBoolean ZrXmlVector::write(ZrXmlWriter& writer) const {
  const ZrBoolean result = ZrXmlObject::write(writer);
  RealWriter reals(writer);
  writer.setAttributeName(ZrXml::ZrVectorXToken);
  reals.write(m_theValue.x());
  writer.setAttributeName(ZrXml::ZrVectorYToken);
  reals.write(m_theValue.y());
  writer.setAttributeName(ZrXml::ZrVectorZToken);
  reals.write(m_theValue.z());
  return result;
}

ZrBoolean ZrXmlVector::writeSchema(ZrXmlSchema& schema) const {
  const ZrBoolean result = ZrXmlObject::writeSchema(schema);
  for (const ZrToken* name : {&ZrXml::ZrVectorXToken, &ZrXml::ZrVectorYToken, &ZrXml::ZrVectorZToken}) {
    schema.setAttributeName(*name);
    schema.setType(typeid(double));
  }
  return result;
}

ZrBoolean ZrXmlVector::equality(const ZrXmlObject* other) const {
  const ZrXmlVector* vector = dynamic_cast<const ZrXmlVector*>(other);
  return vector != nullptr && *this == *vector;
}

ZrXmlObject* ZrXmlVector::newObject() const { return new ZrXmlVector(); }

ZrToken ZrXmlVector::token() const { return classToken(); }

void ZrXmlVector::setValue(const ZrVector& value) {
  m_theValue = value;
  setSpecified(true);
}

void ZrXmlVector::set(double x, double y, double z) { setValue(ZrVector(x, y, z)); }

ZrBoolean ZrXmlVector::writeBin(std::ostream& out) const {
  const double components[componentCount] = {m_theValue.x(), m_theValue.y(), m_theValue.z()};
  out.write(reinterpret_cast<const char*>(components), sizeof components);
  return true;
}

ZrBoolean ZrXmlVector::readBin(std::istream& in) {
  double components[componentCount] = {0.0, 0.0, 0.0};
  in.read(reinterpret_cast<char*>(components), sizeof components);
  m_theValue.set(components[0], components[1], components[2]);
  return true;
}

ZrXmlVector ZrXmlVector::nullObject() { return ZrXmlVector(); }

const ZrToken& ZrXmlVector::classToken() { return ZrXml::ZrLinearToken; }

// Written like every file the library writes: to a new temporary file renamed into place when whole.
ZrBoolean ZrXmlVector::dump(const ZrXmlVectorVector& vectors, const char* filename) {
  if (!filename) return false;
  return ZrReplaceFile(filename, [&vectors, filename](std::FILE* file) {
    std::fputs(dumpName(filename).c_str(), file);
    std::fputs("=[...\n", file);
    for (const ZrVector& vector : vectors.vectorContainer()) {
      std::fprintf(file, "%.16e %.16e %.16e ", vector.x(), vector.y(), vector.z());
      std::fputc('\n', file);
    }
    return std::fputs("]\n", file) >= 0;
  });
}

ZrXmlVector::RealWriter::RealWriter(ZrXmlWriter& writer)
    : m_theWriter(writer),
      m_theShortWay(writer.plainValueStream()),
      m_thePrecision(static_cast<int>(writer.valueStream().precision())),
      m_theLossless(writer.losslessReals()) {}

void ZrXmlVector::RealWriter::write(double value) {
  if (m_theLossless) {
    m_theWriter.type(typeid(double));
    char text[ZrDOUBLE_CHARS_SIZE];
    m_theWriter.data(text, ZrDOUBLE2CHARS(value, text));
    return;
  }
  if (!m_theShortWay) {
    m_theWriter << value;
    return;
  }
  m_theWriter.type(typeid(double));
  char digits[ZrDOUBLE_G_CHARS_SIZE];
  m_theWriter.data(digits, ZrDOUBLE2CHARS_G(value, m_thePrecision, digits));  // no string per value
}
