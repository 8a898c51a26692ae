#include <ZrTestSupport.h>
#include <ZrXmlWriter.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <functional>
#include <string>

// Documents written by the writer, checked by an independent parser: xmllint must accept each one
// without a single diagnostic. xmllint reports namespace errors (an undeclared prefix, say) but
// still exits with status 0, so its output has to be empty as well.

namespace {

const std::string A = "http://example.org/robot/cr";
const std::string B = "http://example.org/geometry/geo";

ZrToken inA(const char* name) { return ZrToken(A, name); }
ZrToken inB(const char* name) { return ZrToken(B, name); }

void attribute(ZrXmlWriter& w, const char* name, const std::string& value) {
  w.setAttributeName(ZrToken(name));
  w << value;
}

// A body that exercises every layout: attributes, nil elements, a foreign namespace declared once and
// reused below, elements moved into the parent's namespace, short and wrapped content.
void writeBody(ZrXmlWriter& w) {
  attribute(w, "version", "3.0.0");
  w.writeStartTag(inA("name"));
  w << std::string("arm");
  w.writeEndTag();
  w.writeStartTag(inA("empty"));
  w.writeEndTag();
  w.writeStartTag(inB("pose"));
  attribute(w, "frame", "base");
  w.writeStartTag(inB("position"));
  w << 1.5 << -2.0 << 1e-9;
  w.writeEndTag();
  w.writeStartTag(inB("unset"));
  w.writeEndTag();
  w.writeStartTag(inA("note"));
  w << std::string("in the default namespace again");
  w.writeEndTag();
  w.writeEndTag();
  w.writeStartTag(inA("samples"));
  w.setAttributeName(ZrToken("size"));
  w << 25u;
  w.writeStartTagUsingParentNamespace(ZrToken("group"));
  for (int i = 0; i < 25; ++i) w << i * 1000.25;
  w.writeEndTag();
  w.writeEndTag();
  w.writeStartTag(inB("flags"));
  w.writeStartTagUsingParentNamespace(ZrToken("element"));
  w << true;
  w.writeEndTag();
  w.writeEndTag();
}

struct DocumentCase {
  const char* file;
  std::function<void(ZrXmlWriter&)> write;
};

std::string xmllintDiagnostics(const std::string& file, const std::string& report, int& status) {
  std::string command = "xmllint --noout '" + file + "' >'" + report + "' 2>&1";
  status = std::system(command.c_str());
  return ZrTest::readFile(report);
}

TEST(ZrXmlWriterXmllint, WrittenDocumentsAreWellFormedAndNamespaceCorrect) {
  if (std::system("command -v xmllint >/dev/null 2>&1") != 0) GTEST_SKIP() << "xmllint is not installed";

  const DocumentCase cases[] = {
      {"plain.xml",
       [](ZrXmlWriter& w) {
         w.setLanguageSelection(ZrXmlWriter::PLAIN_XML);
         w.header(inA("robot"), A);
         writeBody(w);
         w.writeEndTag();
       }},
      {"markup.xml",
       [](ZrXmlWriter& w) {
         w.setLanguageSelection(ZrXmlWriter::TOOLKIT_MARKUP);
         w.header(inA("robot"), A);
         writeBody(w);
         w.writeEndTag();
       }},
      {"headerless.xml",
       [](ZrXmlWriter& w) {
         w.writeStartTag(inA("robot"));
         writeBody(w);
         w.writeEndTag();
       }},
      {"nil-root.xml",
       [](ZrXmlWriter& w) {
         w.header(inA("robot"), A);
         w.writeEndTag();
       }},
      {"awkward-namespaces.xml",
       [](ZrXmlWriter& w) {
         w.header(inA("robot"), A);
         w.writeStartTag(ZrToken("urn:zr:parts", "part"));  // no usable prefix in the namespace
         w.writeStartTag(ZrToken("http://example.org/xsi", "odd"));  // would clash with xsi
         w.writeStartTag(inA("nil"));
         w.writeEndTag();
         w.writeEndTag();
         w.writeStartTag(ZrToken("http://example.org/defaults/", "d"));  // empty prefix: new default
         w.writeStartTag(inA("outer"));
         w.writeStartTag(ZrToken("urn:zr:parts", "part"));
         w.writeEndTag();
         w.writeEndTag();
         w.writeEndTag();
         w.writeEndTag();
         w.writeEndTag();
       }},
  };

  ZrTest::TempDir dir;
  for (const DocumentCase& c : cases) {
    const std::string path = dir.file(c.file);
    {
      std::ofstream out(path, std::ios::binary);
      ZrXmlWriter writer(path, out);
      c.write(writer);
      EXPECT_EQ(writer.depth(), 0u) << c.file;
    }
    int status = 0;
    const std::string diagnostics = xmllintDiagnostics(path, dir.file(std::string(c.file) + ".report"), status);
    EXPECT_EQ(status, 0) << c.file << "\n" << diagnostics << "\n" << ZrTest::readFile(path);
    EXPECT_EQ(diagnostics, "") << c.file << "\n" << ZrTest::readFile(path);
  }
}

// The checker itself must notice the faults that matter, or the test above proves nothing.
TEST(ZrXmlWriterXmllint, TheCheckRejectsBrokenDocuments) {
  if (std::system("command -v xmllint >/dev/null 2>&1") != 0) GTEST_SKIP() << "xmllint is not installed";
  ZrTest::TempDir dir;
  const char* const broken[] = {
      "<a xmlns=\"http://x.org/a\"><b xsi:nil=\"true\"/></a>\n",  // undeclared xsi prefix
      "<a xmlns=\"http://x.org/a\"><p:b/></a>\n",                 // undeclared element prefix
      "<a><b></a>\n",                                              // not well-formed
  };
  int index = 0;
  for (const char* text : broken) {
    const std::string path = dir.write("broken" + std::to_string(index++) + ".xml", text);
    int status = 0;
    const std::string diagnostics = xmllintDiagnostics(path, path + ".report", status);
    EXPECT_TRUE(status != 0 || !diagnostics.empty()) << text;
  }
}

}  // namespace
