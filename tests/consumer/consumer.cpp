// A client of the installed package: headers by class name, the installed libraries, and a vector of
// the client's own class, which instantiates from the installed headers. Exits 0 when the written
// document reads back equal and without a fault.
#include <ZrPrint.h>
#include <ZrXmlBasicType.h>
#include <ZrXmlCompoundType.h>
#include <ZrXmlReader.h>
#include <ZrXmlVectorType.h>
#include <ZrXmlWriter.h>

#include <sstream>

namespace {

class Pallet : public ZrXmlCompoundType {
 public:
  Pallet() = default;
  explicit Pallet(float load) : m_theLoad(load) {}
  ZrXmlObject* clone() const override { return new Pallet(*this); }
  ZrXmlObject* newObject() const override { return new Pallet(); }
  ZrBoolean equality(const ZrXmlObject* other) const override {
    const Pallet* pallet = dynamic_cast<const Pallet*>(other);
    return pallet && m_theLoad == pallet->m_theLoad;
  }
  ZrToken token() const override { return ZrToken("urn:consumer", "pallet"); }

 protected:
  void registerComponents() override { registerAttributeComponent(ZrToken("load"), &m_theLoad); }

 private:
  ZrXmlBasicType<float> m_theLoad;
};

}  // namespace

int main() {
  ZrXmlVectorType<Pallet> pallets;
  pallets.pushBack(Pallet(1.5f));
  pallets.pushBack(Pallet(2.25f));
  std::ostringstream out;
  ZrXmlWriter writer("consumer.xml", out);
  writer.header(ZrToken("urn:consumer", "pallets"), "urn:consumer");
  pallets.write(writer);
  writer.writeEndTag();

  std::istringstream in(out.str());
  ZrXmlReader reader("consumer.xml", in);
  reader.readXml();
  ZrXmlVectorType<Pallet> back;
  back.read(reader);
  const bool same = back == pallets && reader.faultCount() == 0;
  Zr::Print::instance().write(Zr::PrintInfo, "%s", out.str().c_str());
  return same ? 0 : 1;
}
