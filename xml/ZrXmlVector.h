#ifndef ZR_XML_VECTOR_H
#define ZR_XML_VECTOR_H

#include <ZrVector.h>
#include <ZrXmlObject.h>

#include <istream>
#include <ostream>
#include <string>

class ZrXmlVectorVector;
class ZrXmlWriter;

// A three-component vector as an XML object. Its components are attributes of one element:
//   <position x="1" y="2.5" z="0"/>
// Reading asks for exactly three attributes. A different count is reported and makes read() false,
// but every x, y or z attribute that is present is still taken, and a component without an attribute
// keeps its earlier value. Each attribute is also checked by its position: when the component at that
// position (first x, then y, then z) is exactly 0.0 after the attribute was taken while the text does
// not begin with '0', the text was not a number and read() is false. A zero written "-0" or ".0" fails
// that check too; the writer never produces those forms.
class ZrXmlVector : public ZrXmlObject {
 public:
  ZrXmlVector() = default;
  ZrXmlVector(const ZrVector& value);  // NOLINT: implicit, so that members can be initialised from vectors
  ZrXmlVector(double x, double y, double z);
  ZrXmlVector(const ZrXmlVector& other) = default;
  ZrXmlVector(ZrXmlVector&& other) noexcept = default;
  ZrXmlVector& operator=(const ZrXmlVector& other) = default;
  ZrXmlVector& operator=(const ZrVector& value);
  ~ZrXmlVector() override;

  void accept(ZrXmlObjectVisitor* visitor) const override;
  ZrXmlObject* clone() const override;
  ZrBoolean read(ZrXmlReader& reader) override;
  // With checked values, reports a component attribute whose name is no component (wanted says which
  // are) or whose text is not a whole number. Orientations and arrays of vectors check theirs through it.
  static void checkComponent(ZrXmlReader& reader, const std::string& name, const std::string& text, const char* wanted);
  ZrBoolean write(ZrXmlWriter& writer) const override;
  ZrBoolean writeSchema(ZrXmlSchema& schema) const override;
  ZrBoolean equality(const ZrXmlObject* other) const override;
  ZrXmlObject* newObject() const override;
  ZrToken token() const override;

  const ZrVector& value() const { return m_theValue; }
  ZrVector& value() { return m_theValue; }
  // Giving a value marks the object specified.
  void setValue(const ZrVector& value);
  void set(double x, double y, double z);
  double x() const { return m_theValue.x(); }
  double y() const { return m_theValue.y(); }
  double z() const { return m_theValue.z(); }
  operator const ZrVector&() const { return m_theValue; }

  bool operator==(const ZrXmlVector& other) const { return m_theValue == other.m_theValue; }
  bool operator!=(const ZrXmlVector& other) const { return !(*this == other); }
  bool operator<(const ZrXmlVector& other) const { return m_theValue < other.m_theValue; }

  // The raw binary form: x, y and z as native 8-byte reals, 24 bytes without a header. Both return
  // true whatever the stream's state; a short read leaves the missing components 0.0.
  ZrBoolean writeBin(std::ostream& out) const;
  ZrBoolean readBin(std::istream& in);

  static ZrXmlVector nullObject();
  static const ZrToken& classToken();

  // Writes an array of vectors as a plain text file: the file's base name (no directory, no
  // extension), "=[...", then one line per vector with x, y and z in "%.16e " each, then "]".
  // The file is created new and renamed into place when whole (ZrReplaceFile); false when it cannot be
  // written, and nothing is left behind then.
  static ZrBoolean dump(const ZrXmlVectorVector& vectors, const char* filename);

  // Writes reals as `writer << value` does: the schema type of a double, then the text as data. The
  // stream's formatting machinery is most of the cost of writing long arrays of reals; when the
  // writer's value stream is in its default state (classic locale, default flags) its text equals
  // printf's "%.<precision>g", which to_chars gives directly, so those reals skip the stream. Any
  // other state keeps the stream. The state is looked at once, when the RealWriter is made. The short
  // way hands the digits to the writer's text form of data(), not to the virtual data(). A writer with
  // lossless reals always takes the short way, with the shortest text that reads back to the value.
  class RealWriter {
   public:
    explicit RealWriter(ZrXmlWriter& writer);
    void write(double value);

   private:
    ZrXmlWriter& m_theWriter;
    bool m_theShortWay;
    int m_thePrecision;
    bool m_theLossless;
  };

 private:
  ZrVector m_theValue;
};

#endif
