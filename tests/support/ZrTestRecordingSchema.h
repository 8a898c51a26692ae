#ifndef ZR_TEST_RECORDING_SCHEMA_H
#define ZR_TEST_RECORDING_SCHEMA_H

#include <ZrXmlSchema.h>

#include <string>
#include <typeinfo>
#include <vector>

namespace ZrTest {

// Records the calls that a schema walk makes, one short text per call, instead of describing anything.
// isRegistered answers yes for the element named knownElement only, as if its type were described already.
class RecordingSchema : public ZrXmlSchema {
 public:
  explicit RecordingSchema(std::string knownElement = "") : m_theKnownElement(std::move(knownElement)) {}
  void writeStartTag(const ZrToken& token, int option) override {
    calls.push_back("start " + token.tokenText() + " " + std::to_string(option));
  }
  void writeStartTagUsingParentNamespace(const ZrToken& token, int option) override {
    calls.push_back("parent " + token.tokenText() + " " + std::to_string(option));
  }
  void setAttributeName(const ZrToken& token) override { calls.push_back("attribute " + token.tokenText()); }
  void setType(const std::type_info& info) override { calls.push_back(std::string("type ") + info.name()); }
  void writeEndTag() override { calls.push_back("end"); }
  void openGroup() override { calls.push_back("group"); }
  void closeGroup() override { calls.push_back("/group"); }
  ZrBoolean isRegistered(const ZrToken& token, const std::string& typeName) override {
    calls.push_back("registered? " + token.tokenText() + " " + typeName);
    return token.tokenText() == m_theKnownElement;
  }
  std::vector<std::string> calls;

 private:
  std::string m_theKnownElement;
};

}  // namespace ZrTest

#endif
