#include "ZrXmlVectorVector.h"

#include "ZrNumberText.h"
#include "ZrPrint.h"
#include "ZrXmlObjectVisitor.h"
#include "ZrXmlReader.h"
#include "ZrXmlSchema.h"
#include "ZrXmlSchemaElementType.h"
#include "ZrXmlVector.h"
#include "ZrXmlWriter.h"

#include <algorithm>
#include <climits>
#include <cstdlib>
#include <string>
#include <typeinfo>

namespace {

const int startTagMode = 1;

// The announced entry count: negative or unreadable text gives 0, and a count beyond the index range
// is cut to it.
ZrU32 announcedCount(const std::string& text) {
  const long count = std::strtol(text.c_str(), nullptr, 10);
  if (count <= 0) return 0;
  return static_cast<unsigned long>(count) > UINT_MAX ? UINT_MAX : static_cast<ZrU32>(count);
}

}  // namespace

ZrXmlVectorVector::ZrXmlVectorVector(const VectorContainer& vectors) : m_theVectors(vectors) {}

ZrXmlVectorVector::~ZrXmlVectorVector() = default;

void ZrXmlVectorVector::accept(ZrXmlObjectVisitor* visitor) const {
  if (visitor) visitor->visit(this);
}

ZrXmlObject* ZrXmlVectorVector::clone() const { return new ZrXmlVectorVector(*this); }

// Called on the array's start tag (the parent has consumed it); leaves the reader on its end tag.
ZrBoolean ZrXmlVectorVector::read(ZrXmlReader& reader) {
  const ZrU32 announced = announcedCount(reader.attributeValue());
  const bool hasChildren = reader.mode() == startTagMode;
  m_theVectors.clear();
  if (hasChildren && reader.options().checkValues()) {
    readCheckedPoints(reader);  // up to and with the end tag
  } else if (hasChildren && announced != 0) {
    m_theVectors.reserve(std::min(announced, m_theMaxReserve));
    for (ZrU32 index = 0; index < announced; ++index) {
      double components[3];
      bool anyValue = false;
      for (double& component : components) {
        // The fast path hands out one buffer: each value is converted before the next is asked for.
        const std::string& text = reader.getAttributeValueFast();
        anyValue = anyValue || !text.empty();
        component = ZrSTRING2DOUBLE(text);  // strtod's result, faster for plain decimal text
      }
      if (!anyValue) break;  // an entry without any value: the document holds no more entries
      m_theVectors.emplace_back(components[0], components[1], components[2]);
    }
  }
  if (m_theVectors.size() != announced)
    Zr::Print::instance().ostream(Zr::PrintSizeWarning, __PRETTY_FUNCTION__)
        << "ZrXmlVectorVector Warning: array size not equal to attribute value -- " << announced << ", actual -- "
        << m_theVectors.size() << "\nFilename: " << reader.filename() << ", Line count: " << reader.lineCountOfFile()
        << '\n';
  if (hasChildren && !reader.options().checkValues()) reader.nextMatchingEndTag();
  return true;
}

// Checked values: each point's components are taken by name, so that a missing one is reported and the
// later ones stay where they belong; missing components are 0.
void ZrXmlVectorVector::readCheckedPoints(ZrXmlReader& reader) {
  static const ZrToken* const theComponents[] = {&ZrXml::ZrVectorXToken, &ZrXml::ZrVectorYToken, &ZrXml::ZrVectorZToken};
  for (int mode = reader.readXml(); mode == startTagMode || mode == ZrXmlMode::emptyElement; mode = reader.readXml()) {
    double components[3] = {0.0, 0.0, 0.0};
    for (int index = 0; index < 3; ++index) {
      const std::string& name = theComponents[index]->tokenText();
      if (reader.attributeName(*theComponents[index]) != *theComponents[index]) {
        reader.reportFaultyValue(true, name, "", "double (the attribute is missing)");
        continue;
      }
      const std::string& text = reader.attributeValue(*theComponents[index]);
      components[index] = ZrSTRING2DOUBLE(text);
      ZrXmlVector::checkComponent(reader, name, text, nullptr);
    }
    while (reader.remainingNumOfAttributes() != 0) {
      const std::string name = reader.attributeName().tokenText();
      ZrXmlVector::checkComponent(reader, name, reader.attributeValue(), "component x, y or z");
    }
    m_theVectors.emplace_back(components[0], components[1], components[2]);
    if (mode == startTagMode) reader.nextMatchingEndTag();
  }
}

ZrBoolean ZrXmlVectorVector::write(ZrXmlWriter& writer) const {
  const ZrBoolean result = ZrXmlObject::write(writer);
  writer.setAttributeName(ZrXml::ZrCountToken);
  writer << static_cast<unsigned int>(m_theVectors.size());
  ZrXmlVector::RealWriter reals(writer);
  for (const ZrVector& vector : m_theVectors) {
    writer.writeStartTagUsingParentNamespace(ZrXml::ZrElementToken);
    writer.setAttributeName(ZrXml::ZrVectorXToken);
    reals.write(vector.x());
    writer.setAttributeName(ZrXml::ZrVectorYToken);
    reals.write(vector.y());
    writer.setAttributeName(ZrXml::ZrVectorZToken);
    reals.write(vector.z());
    writer.writeEndTag();
  }
  return result;
}

ZrBoolean ZrXmlVectorVector::writeSchema(ZrXmlSchema& schema) const {
  const ZrBoolean result = ZrXmlObject::writeSchema(schema);
  schema.setAttributeName(ZrXml::ZrCountToken);
  schema.setType(typeid(unsigned int));
  schema.writeStartTagUsingParentNamespace(ZrXml::ZrElementToken, ZrXmlSchemaElementType::XML_STARTTAG_OPTION);
  for (const ZrToken* name : {&ZrXml::ZrVectorXToken, &ZrXml::ZrVectorYToken, &ZrXml::ZrVectorZToken}) {
    schema.setAttributeName(*name);
    schema.setType(typeid(double));
  }
  schema.writeEndTag();
  return result;
}

ZrBoolean ZrXmlVectorVector::equality(const ZrXmlObject* other) const {
  const ZrXmlVectorVector* vectors = dynamic_cast<const ZrXmlVectorVector*>(other);
  return vectors != nullptr && *this == *vectors;
}

ZrXmlObject* ZrXmlVectorVector::newObject() const { return new ZrXmlVectorVector(); }

ZrToken ZrXmlVectorVector::token() const { return classToken(); }

void ZrXmlVectorVector::leftRotate(ZrU32 count) {
  if (m_theVectors.empty()) return;
  std::rotate(m_theVectors.begin(), m_theVectors.begin() + count % m_theVectors.size(), m_theVectors.end());
}

ZrXmlVectorVector ZrXmlVectorVector::nullObject() { return ZrXmlVectorVector(); }

const ZrToken& ZrXmlVectorVector::classToken() { return ZrXml::ZrVectorTypeToken; }
