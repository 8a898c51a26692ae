// Plug-in libraries named in a variable compound's library list: which one is processed, what is
// reported, and what a document may and may not name.
#include <ZrDllLoader.h>
#include <ZrTestDocument.h>
#include <ZrTestSupport.h>
#include <ZrXmlBaseVariableCompoundType.h>
#include <ZrXmlReader.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>
#include <sstream>
#include <vector>

namespace {

const char* const theMissingClassToken = "ZrBaseExpressionTreeContainer Error -- getClassToken not found in DLL";
const char* const theMissingCreator = "ZrBaseExpressionTreeContainer Error -- getCreator not found in DLL";

// Keeps every child it can create; knows no class of its own, so all classes come from plug-ins.
class PluginBox : public ZrXmlBaseVariableCompoundType {
 public:
  ZrXmlObject* clone() const override { return new PluginBox(*this); }
  ZrXmlObject* newObject() const override { return new PluginBox; }
  ZrBoolean equality(const ZrXmlObject*) const override { return true; }
  ZrToken token() const override { return "urn:zr:test#box"; }
  void registerComponentCreators() override {}
  ZrBoolean readVariableComponent(const ZrToken& token, ZrXmlReader& reader) override {
    if (readLibraryList(token, reader)) return true;
    std::unique_ptr<ZrXmlObject> child(newObjectFromToken(token));
    if (!child) return false;
    child->read(reader);
    children.push_back(std::move(child));
    return true;
  }
  void setLibraries(const std::vector<std::string>& names) {
    LibraryList list;
    for (const std::string& name : names) list.pushBack(name);
    setAddLibraries(list);
  }
  std::vector<std::string> creatorNames() const {
    std::vector<std::string> names;
    for (const auto& entry : creatorMap()) names.push_back(entry.first.tokenText());
    return names;
  }
  std::vector<std::shared_ptr<ZrXmlObject>> children;
};

class ZrPluginLoading : public ::testing::Test {
 protected:
  void SetUp() override {
    ZrDllLoader::setSearchPath({ZR_TEST_NODE_PLUGIN_DIR});
    ::unsetenv(ZrDllLoader::m_thePluginPathVariable);
  }
  void TearDown() override { SetUp(); }
};

TEST_F(ZrPluginLoading, OnlyTheFirstLoadableLibraryOfTheListIsProcessed) {
  const struct {
    std::vector<std::string> libraries;
    std::vector<std::string> creators;
    std::vector<std::string> messages;  // print type 5, in order, each by a fragment
  } rows[] = {
      {{}, {}, {}},
      {{"zrTestNodesA", "zrTestNodesB"}, {"alpha"}, {}},
      {{"zrNoSuchPlugin", "zrTestNodesB", "zrTestNodesA"}, {"beta"}, {}},
      // a name that would leave the search path is refused even though the file is there
      {{"../nodes/zrTestNodesA", "zrTestNodesB"}, {"beta"}, {"path separator"}},
      // a library missing an entry point is the one processed, and yields nothing
      {{"zrTestNoClassToken", "zrTestNodesA"}, {}, {theMissingClassToken}},
      {{"zrTestNoCreator", "zrTestNodesA"}, {}, {theMissingCreator}},
      {{"zrTestEndless"}, {"epsilon"}, {"more than 4096 classes"}},
      // a class without a creator is reported with the library and its index, and ends the list
      {{"zrTestNullCreator"}, {}, {"no creator for zeta.\n\tLibrary: " ZR_TEST_NODE_PLUGIN_DIR "/zrTestNullCreator.zrp\n\tIndex: 0\n"}},
  };
  for (const auto& row : rows) {
    ZrTest::PrintCapture capture;
    PluginBox box;
    box.setLibraries(row.libraries);
    box.processLibraries();
    const std::string where = row.libraries.empty() ? std::string("(empty)") : row.libraries[0];
    EXPECT_EQ(box.creatorNames(), row.creators) << where;
    ASSERT_EQ(capture.count(), row.messages.size()) << where << ": " << capture.all();
    for (size_t i = 0; i < row.messages.size(); ++i) {
      EXPECT_EQ(capture.messages()[i].first, Zr::PrintPluginError);
      EXPECT_NE(capture.messages()[i].second.find(row.messages[i]), std::string::npos) << capture.all();
    }
  }
}

TEST_F(ZrPluginLoading, WithNullCreatorsSkippedTheLaterClassesAreKept) {
  ZrXmlBaseVariableCompoundType::setDefaultSkipNullCreators(true);
  PluginBox box;
  ZrXmlBaseVariableCompoundType::setDefaultSkipNullCreators(false);
  box.setLibraries({"zrTestNullCreator"});
  ZrTest::PrintCapture capture;
  box.processLibraries();
  EXPECT_EQ(box.creatorNames(), std::vector<std::string>{"second"});
  EXPECT_EQ(capture.count(), 1u) << capture.all();
}

TEST_F(ZrPluginLoading, AMissingCreatorStopsBeforeTheClassListIsWalked) {
  PluginBox box;
  box.setLibraries({"zrTestNoCreator"});
  ZrTest::PrintCapture capture;
  box.processLibraries();
  ZrDllLoader loader;  // the same, still loaded library
  ASSERT_TRUE(loader.loadDll("zrTestNoCreator", ".zrp"));
  auto calls = reinterpret_cast<int (*)()>(loader.getFunction("zrTestClassTokenCalls"));
  ASSERT_NE(calls, nullptr);
  EXPECT_EQ(calls(), 0);
  EXPECT_EQ(capture.all(), std::string(theMissingCreator) + "\n\tLibrary: " ZR_TEST_NODE_PLUGIN_DIR "/zrTestNoCreator.zrp\n");
}

TEST_F(ZrPluginLoading, ADocumentNamesItsLibrariesAndUsesTheirClasses) {
  ZrTest::PrintCapture capture;
  PluginBox box;
  EXPECT_TRUE(ZrTest::readRoot("<box xmlns=\"urn:zr:test\">\n"
                               "  <addLibraries size=\"2\"><group>zrTestNodesB zrTestNodesA</group></addLibraries>\n"
                               "  <beta/>\n  <alpha><beta/></alpha>\n  <beta></beta>\n</box>\n",
                               box));
  EXPECT_EQ(box.addLibraries().size(), 2u);
  ASSERT_EQ(box.children.size(), 2u);  // the creators stay callable after the loader is gone
  EXPECT_EQ(box.children[1]->token().tokenText(), "beta");
  // element tokens come without their namespace, so the qualified text is "#alpha"
  EXPECT_EQ(capture.all(), "Bad token: #alpha on line 4\n");
}

}  // namespace
