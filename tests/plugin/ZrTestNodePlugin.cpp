// Plug-ins for the tests of plug-in loading, one source built in several variants:
//   ZR_TEST_NODE_NAME          the one class token the plug-in offers ("alpha", "beta", ...)
//   ZR_TEST_WITHOUT_CLASS_TOKEN / ZR_TEST_WITHOUT_CREATOR   leave out that entry point
//   ZR_TEST_ENDLESS            never end the class list (the loader must cut it short)
//   ZR_TEST_NULL_FIRST_CREATOR offer two classes, the node's and "second", with no creator for the first
// zrTestClassTokenCalls counts the calls of getClassToken, so a test can tell whether it was used.
#include <ZrXmlBaseVariableCompoundType.h>
#include <ZrXmlCompoundType.h>

namespace {

const ZrToken theNodeToken("urn:zr:test", ZR_TEST_NODE_NAME);
const ZrToken theSecondToken("urn:zr:test", "second");
const ZrToken theEndOfList;
int theClassTokenCalls = 0;

class ZrTestPluginNode : public ZrXmlCompoundType {
 public:
  ZrXmlObject* clone() const override { return new ZrTestPluginNode(*this); }
  ZrXmlObject* newObject() const override { return new ZrTestPluginNode; }
  ZrBoolean equality(const ZrXmlObject* other) const override {
    return dynamic_cast<const ZrTestPluginNode*>(other) != nullptr;
  }
  ZrToken token() const override { return theNodeToken; }
  void registerComponents() override {}
};

[[maybe_unused]] ZrXmlObject* createNode() { return new ZrTestPluginNode; }

}  // namespace

ZR_PLUGIN_ENTRY_POINT int zrTestClassTokenCalls() { return theClassTokenCalls; }

#ifndef ZR_TEST_WITHOUT_CLASS_TOKEN
ZR_PLUGIN_ENTRY_POINT const ZrToken& getClassToken(ZrU32 index) {
  ++theClassTokenCalls;
#if defined(ZR_TEST_ENDLESS)
  (void)index;
  return theNodeToken;
#elif defined(ZR_TEST_NULL_FIRST_CREATOR)
  return index == 0 ? theNodeToken : index == 1 ? theSecondToken : theEndOfList;
#else
  return index == 0 ? theNodeToken : theEndOfList;
#endif
}
#endif

#ifndef ZR_TEST_WITHOUT_CREATOR
ZR_PLUGIN_ENTRY_POINT ZrXmlBaseVariableCompoundType::Creator getCreator([[maybe_unused]] ZrU32 index) {
#ifdef ZR_TEST_NULL_FIRST_CREATOR
  if (index == 0) return nullptr;
#endif
  return createNode;
}
#endif
