#include "ZrXmlOrientation.h"

#include "ZrPrint.h"
#include "ZrXmlObjectVisitor.h"
#include "ZrXmlReader.h"
#include "ZrXmlSchema.h"
#include "ZrXmlVector.h"
#include "ZrXmlWriter.h"

#include <cstdlib>
#include <string>
#include <typeinfo>

namespace {

const int startTagMode = 1;
const int endTagMode = 2;
const int emptyElementMode = 3;
const ZrU32 componentCount = 4;

const ZrToken* const componentTokens[componentCount] = {&ZrXml::ZrQuaternion0Token, &ZrXml::ZrQuaternion1Token,
                                                        &ZrXml::ZrQuaternion2Token, &ZrXml::ZrQuaternion3Token};

// The component that an attribute name sets ("q0" to "q3"), or -1 for any other name.
int componentIndex(const ZrToken& name) {
  const std::string& text = name.tokenText();
  if (text.size() != 2 || text[0] != 'q' || text[1] < '0' || text[1] > '3') return -1;
  return text[1] - '0';
}

}  // namespace

ZrXmlOrientation::ZrXmlOrientation(const ZrOrientation& value) : m_theValue(value) {}

ZrXmlOrientation::ZrXmlOrientation(double q0, double q1, double q2, double q3) : m_theValue(q0, q1, q2, q3) {}

ZrXmlOrientation& ZrXmlOrientation::operator=(const ZrOrientation& value) {
  setValue(value);
  return *this;
}

ZrXmlOrientation::~ZrXmlOrientation() = default;

void ZrXmlOrientation::accept(ZrXmlObjectVisitor* visitor) const {
  if (visitor) visitor->visit(this);
}

ZrXmlObject* ZrXmlOrientation::clone() const { return new ZrXmlOrientation(*this); }

// The count warning names the vector class and carries no line: that is its established text.
ZrBoolean ZrXmlOrientation::read(ZrXmlReader& reader) {
  const ZrU32 count = reader.remainingNumOfAttributes();
  if (count != componentCount)
    Zr::Print::instance().write(Zr::PrintError, "ZrXmlVector Warning: 4 attributes needed, but %d were found",
                                static_cast<int>(count));
  double components[componentCount] = {0.0, 0.0, 0.0, 0.0};
  const int mode = reader.mode();
  if (mode == startTagMode || mode == emptyElementMode) {
    const bool checking = reader.options().checkValues();
    for (ZrU32 position = 0; position < count; ++position) {
      const int index = componentIndex(reader.attributeName());  // before the value: taking it removes the name
      const std::string name = checking ? reader.attributeName().tokenText() : std::string();
      const std::string& text = reader.attributeValue();
      if (checking) ZrXmlVector::checkComponent(reader, name, text, index >= 0 ? nullptr : "component q0, q1, q2 or q3");
      if (index >= 0) components[index] = std::strtod(text.c_str(), nullptr);
    }
  }
  m_theValue.set(components[0], components[1], components[2], components[3]);
  m_theValue.normalize();
  if (mode == startTagMode && reader.readXml() != endTagMode)
    Zr::Print::instance().write(Zr::PrintError,
                                "ZrXmlOrientation Error: file not well formed.\n\tEnd tag needed.\n\tFile: %s\n\tLine: %d",
                                reader.filename().c_str(), reader.lineCountOfFile());
  return true;
}

ZrBoolean ZrXmlOrientation::write(ZrXmlWriter& writer) const {
  const ZrBoolean result = ZrXmlObject::write(writer);
  ZrXmlVector::RealWriter reals(writer);
  for (ZrU32 index = 0; index < componentCount; ++index) {
    writer.setAttributeName(*componentTokens[index]);
    reals.write(m_theValue.q(static_cast<int>(index)));
  }
  return result;
}

ZrBoolean ZrXmlOrientation::writeSchema(ZrXmlSchema& schema) const {
  const ZrBoolean result = ZrXmlObject::writeSchema(schema);
  for (const ZrToken* name : componentTokens) {
    schema.setAttributeName(*name);
    schema.setType(typeid(double));
  }
  return result;
}

ZrBoolean ZrXmlOrientation::equality(const ZrXmlObject* other) const {
  const ZrXmlOrientation* orientation = dynamic_cast<const ZrXmlOrientation*>(other);
  return orientation != nullptr && *this == *orientation;
}

ZrXmlObject* ZrXmlOrientation::newObject() const { return new ZrXmlOrientation(); }

ZrToken ZrXmlOrientation::token() const { return classToken(); }

void ZrXmlOrientation::setValue(const ZrOrientation& value) {
  m_theValue = value;
  setSpecified(true);
}

ZrBoolean ZrXmlOrientation::writeBin(std::ostream& out) const {
  const double components[componentCount] = {m_theValue.q0(), m_theValue.q1(), m_theValue.q2(), m_theValue.q3()};
  out.write(reinterpret_cast<const char*>(components), sizeof components);
  return true;
}

ZrBoolean ZrXmlOrientation::readBin(std::istream& in) {
  double components[componentCount] = {0.0, 0.0, 0.0, 0.0};
  in.read(reinterpret_cast<char*>(components), sizeof components);
  m_theValue = ZrOrientation(components[0], components[1], components[2], components[3]);
  return true;
}

ZrXmlOrientation ZrXmlOrientation::nullObject() { return ZrXmlOrientation(0.0, 0.0, 0.0, 0.0); }

const ZrToken& ZrXmlOrientation::classToken() { return ZrXml::ZrOrientationToken; }
