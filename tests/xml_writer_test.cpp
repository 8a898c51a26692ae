#include <ZrTestSupport.h>
#include <ZrXmlWriter.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <limits>
#include <map>
#include <sstream>
#include <string>
#include <vector>

namespace {

const std::string A = "http://example.org/a";
const std::string B = "http://example.org/b";
const std::string XSI = "http://www.w3.org/2001/XMLSchema-instance";
const std::string xA = " xmlns=\"" + A + "\"";
const std::string xB = " xmlns:b=\"" + B + "\"";
const std::string nil = " xsi:nil=\"true\"/>\n";
const std::string nilDeclaringXsi = " xmlns:xsi=\"" + XSI + "\"" + nil;
const std::string declarationLine = "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?>\n";
const std::map<char, std::string> theNamespaces = {
    {'a', A}, {'b', B}, {'o', "http://other.org/b"}, {'c', "http://example.org/c/"}, {'u', "urn:zr:test"},
    {'x', "http://example.org/xsi"}};

// "a:name" is name in namespace a of the table above; a name without "x:" has no namespace.
ZrToken tokenOf(const std::string& text) {
  if (text.size() > 2 && text[1] == ':') return ZrToken(theNamespaces.at(text[0]), text.substr(2));
  return ZrToken(text);
}

// Runs a script of writer calls, one word each: "<a:n" start tag, "^n" start tag in the parent's
// namespace, "@k=v" attribute ("@k" the name alone), "=text" a value ('_' stands for a blank),
// "#n" content columns, "/" end tag, "Ha:n" header with the schema namespace ".../ns/cr".
void run(ZrXmlWriter& w, const std::string& script) {
  std::istringstream words(script);
  for (std::string word; words >> word;) {
    std::string rest = word.substr(1);
    std::replace(rest.begin(), rest.end(), '_', ' ');
    size_t equals = rest.find('=');
    switch (word[0]) {
      case '<': w.writeStartTag(tokenOf(rest)); break;
      case '^': w.writeStartTagUsingParentNamespace(tokenOf(rest)); break;
      case '@':
        w.setAttributeName(tokenOf(rest.substr(0, equals)));
        if (equals != std::string::npos) w << rest.substr(equals + 1);
        break;
      case '=': w << rest; break;
      case '#': w.setNumOfContentColumns(static_cast<unsigned>(std::stoul(rest))); break;
      case '/': w.writeEndTag(); break;
      case 'H': w.header(tokenOf(rest), "http://example.org/ns/cr"); break;
      default: FAIL() << "bad script word " << word;
    }
  }
}

std::string items(int count) {
  std::string text;
  for (int i = 1; i <= count; ++i) text += " =" + std::to_string(i);
  return text;
}

struct ScriptCase {
  const char* name;
  std::string script, expected;
  std::vector<std::string> messages = {};
};

void check(const ScriptCase& c, const char* file = "f.xml", bool namespaceComplete = false) {
  ZrTest::PrintCapture capture;
  std::ostringstream out;
  ZrXmlWriter writer(file, out);
  writer.setNamespaceComplete(namespaceComplete);
  run(writer, c.script);
  EXPECT_EQ(out.str(), c.expected) << c.name;
  EXPECT_EQ(capture.texts(), c.messages) << c.name;
  EXPECT_LT(writer.depth(), 10u) << c.name;  // surplus end tags must not wrap the depth around
  for (const auto& message : capture.messages()) EXPECT_EQ(message.first, Zr::PrintError) << c.name;
}

// The toolkit's written form: the root's namespace is the current one and undeclared, nil elements
// carry xsi:nil alone.
TEST(ZrXmlWriter, LayoutOfCallSequences) {
  const std::string x50(50, 'x'), y51(51, 'y');
  const ScriptCase cases[] = {
      {"nil element", "<a:r /", "<r" + nil},
      {"attributes only", "<a:r @size=3 @name=x /", "<r size=\"3\" name=\"x\"/>\n"},
      {"50 characters stay inline", "<a:r <a:c =" + x50 + " / /", "<r>\n <c>" + x50 + "</c>\n</r>\n"},
      {"51 characters get their own line", "<a:r <a:c =" + y51 + " / /",
       "<r>\n <c>\n  " + y51 + "\n </c>\n</r>\n"},
      {"a new row before the eleventh item", "<a:r <a:c" + items(11) + " / /",
       "<r>\n <c>1 2 3 4 5 6 7 8 9 10\n    11</c>\n</r>\n"},
      {"columns set after the start tag", "<a:v #3" + items(4) + " /", "<v>1 2 3\n  4</v>\n"},
      {"zero columns never wrap", "<a:v #0" + items(11) + " /", "<v>1 2 3 4 5 6 7 8 9 10 11</v>\n"},
      {"content before a child is kept", "<a:r =lead <a:c =1 / /", "<r>lead\n <c>1</c>\n</r>\n"},
      {"header leaves the root open", "Ha:robot @version=3.0.0 <a:arm / /",
       declarationLine + "<robot xmlns:xsi=\"" + XSI +
           "\"\n  xsi:schemaLocation=\"http://example.org/ns/cr\n  robot.cr.xsd\" version=\"3.0.0\">\n"
           " <arm" + nil + "</robot>\n"},
  };
  for (const ScriptCase& c : cases) check(c, "/data/robot.xml");
}

// Each case in the toolkit's form and in the namespace-complete form.
TEST(ZrXmlWriter, NamespaceDeclarationsInBothForms) {
  struct Case {
    const char* name;
    std::string script, toolkit, complete;
  };
  const Case cases[] = {
      {"declared once per subtree", "<a:r <b:x <b:y =1 / <a:back =2 / / <b:z =3 / /",
       "<r>\n <b:x" + xB + ">\n  <b:y>1</b:y>\n  <back>2</back>\n </b:x>\n <b:z" + xB + ">3</b:z>\n</r>\n",
       "<r" + xA + ">\n <b:x" + xB + ">\n  <b:y>1</b:y>\n  <back>2</back>\n </b:x>\n <b:z" + xB + ">3</b:z>\n</r>\n"},
      {"parent namespace rule", "<a:r <b:x ^group =1 / / ^b:element =2 / /",
       "<r>\n <b:x" + xB + ">\n  <b:group>1</b:group>\n </b:x>\n <element>2</element>\n</r>\n",
       "<r" + xA + ">\n <b:x" + xB + ">\n  <b:group>1</b:group>\n </b:x>\n <element>2</element>\n</r>\n"},
      {"prefix is the last segment, usable or not", "<a:r <u:item =1 / <x:odd =2 / /",
       "<r>\n <urn:zr:test:item xmlns:urn:zr:test=\"urn:zr:test\">1</urn:zr:test:item>\n"
       " <xsi:odd xmlns:xsi=\"http://example.org/xsi\">2</xsi:odd>\n</r>\n",
       "<r" + xA + ">\n <ns2:item xmlns:ns2=\"urn:zr:test\">1</ns2:item>\n"
       " <ns2:odd xmlns:ns2=\"http://example.org/xsi\">2</ns2:odd>\n</r>\n"},
      {"empty prefix declares a default namespace", "<a:r <c:item <a:kid =1 / / /",
       "<r>\n <item xmlns=\"http://example.org/c/\">\n  <kid>1</kid>\n </item>\n</r>\n",
       "<r" + xA + ">\n <item xmlns=\"http://example.org/c/\">\n  <a:kid xmlns:a=\"" + A +
           "\">1</a:kid>\n </item>\n</r>\n"},
      {"rebound prefix", "<a:r <b:x <o:y <b:z =1 / / / /",
       "<r>\n <b:x" + xB + ">\n  <b:y xmlns:b=\"http://other.org/b\">\n   <b:z>1</b:z>\n  </b:y>\n </b:x>\n</r>\n",
       "<r" + xA + ">\n <b:x" + xB + ">\n  <b:y xmlns:b=\"http://other.org/b\">\n   <b:z" + xB +
           ">1</b:z>\n  </b:y>\n </b:x>\n</r>\n"},
      {"nil elements with and without header", "<a:r <a:n / / Ha:s <a:n / /",
       "<r>\n <n" + nil + "</r>\n" + declarationLine + "<s xmlns:xsi=\"" + XSI +
           "\"\n  xsi:schemaLocation=\"http://example.org/ns/cr\n  robot.cr.xsd\">\n <n" + nil + "</s>\n",
       "<r" + xA + ">\n <n" + nilDeclaringXsi + "</r>\n" + declarationLine + "<s" + xA + " xmlns:xsi=\"" + XSI +
           "\"\n  xsi:schemaLocation=\"http://example.org/ns/cr\n  robot.cr.xsd\">\n <n" + nil + "</s>\n"},
  };
  for (const Case& c : cases) {
    check({c.name, c.script, c.toolkit}, "/data/robot.xml", false);
    check({c.name, c.script, c.complete}, "/data/robot.xml", true);
  }
}

TEST(ZrXmlWriter, EachFaultPrintsItsTextAndWritingGoesOn) {
  const std::string f = "\tFile: f.xml\n";
  const ScriptCase cases[] = {
      {"element without namespace", "<plain =1 /", "<plain>1</plain>\n",
       {"ZrXmlWriter Error: All elements must have namespace: plain\n" + f}},
      {"attribute in a declared namespace", "<a:r <b:x @b:at=1 / /", "<r>\n <b:x" + xB + " b:at=\"1\"/>\n</r>\n",
       {"ZrXmlWriter Error: no namespace on attributes preferred: at\n" + f}},
      {"attribute in an undeclared namespace", "<a:r @b:at=1 /", "<r at=\"1\"/>\n",
       {"ZrXmlWriter Error: no namespace on attributes preferred: at\n" + f,
        "ZrXmlWriter Error: attribute namespace doesn't exist: at\n" + f}},
      {"end tag after an attribute name", "<a:r @at /", "<r at=",
       {"ZrXmlWriter Error: end tag following incorrect mode 2.  File f.xml\n"}},
      {"end tag first", "/", "", {"ZrXmlWriter Error: end tag following incorrect mode 0.  File f.xml\n"}},
      {"one end tag too many", "<a:r / /", "<r" + nil,
       {"ZrXmlWriter Error: end tag following incorrect mode 5.  File f.xml\n"}},
      {"value before any element", "=1", "",
       {"ZrXmlWriter Error: element  is placing content at incorrect location.\n" + f}},
      {"value after a child", "<a:r <a:c @k=v / =late /", "<r>\n <c k=\"v\"/>\n</r>\n",
       {"ZrXmlWriter Error: element r is placing content at incorrect location.\n" + f}},
  };
  for (const ScriptCase& c : cases) check(c);
}

TEST(ZrXmlWriter, ValueTextsAndTypeNames) {
  std::ostringstream out;
  ZrXmlWriter w("v.xml", out);
  w.writeStartTag(ZrToken(A, "e"));
  std::vector<std::string> names;
  auto typeOf = [&](ZrXmlWriter&) -> ZrXmlWriter& { return names.push_back(w.typeName()), w; };
  typeOf(w << true), typeOf(w << 'A'), typeOf(w << 0.1), typeOf(w << 1234567.0), typeOf(w << -7);
  typeOf(w << short(-3)), typeOf(w << 4000000000u), typeOf(w << static_cast<unsigned short>(65535));
  typeOf(w << std::string("s")), typeOf(w << ZrAngle(1.5)), typeOf(w << ZrNonNegReal(2.25));
  w.writeEndTag();
  EXPECT_EQ(out.str(), "<e>\n 1 A 0.1 1.23457e+06 -7 -3 4000000000 65535 s 1.5\n  2.25\n</e>\n");
  EXPECT_EQ(names, (std::vector<std::string>{"boolean", "byte", "double", "double", "string", "short", "string",
                                             "unsignedShort", "string", "string", "string"}));
  EXPECT_TRUE(w.valueStream().str().empty());

  const std::pair<const std::type_info*, const char*> mapping[] = {
      {&typeid(float), "float"}, {&typeid(unsigned long), "unsignedLong"}, {&typeid(long), "long"},
      {&typeid(unsigned char), "unsignedByte"}, {&typeid(signed char), "string"}};
  for (const auto& entry : mapping) {
    w.type(*entry.first);
    EXPECT_EQ(w.typeName(), entry.second) << entry.first->name();
  }
}

// Numbers are formatted without the value stream while it is as a fresh stream; the text must be the
// stream's to the byte, and once the stream is set otherwise the stream itself formats them.
TEST(ZrXmlWriter, NumbersAreWrittenAsTheValueStreamWritesThem) {
  const double reals[] = {0.0, -0.0, 0.1, 1.0 / 3, -2.5e-7, 123456.5, 1234567.0, 1e21, 5e-324, 1.7976931348623157e308,
                          std::numeric_limits<double>::infinity(), -std::numeric_limits<double>::infinity()};
  const long long integers[] = {0, -1, 42, -2147483648LL, 4294967295LL, -9223372036854775807LL - 1};
  const auto streamText = [](const std::ostringstream& settings, auto value) {
    std::ostringstream stream;
    stream.copyfmt(settings);
    stream << value;
    return stream.str();
  };
  const auto writerText = [](const std::ostringstream& settings, auto write) {
    std::ostringstream out;
    ZrXmlWriter writer("n.xml", out);
    writer.valueStream().copyfmt(settings);
    writer.writeStartTag(ZrToken(A, "e"));
    writer.setAttributeName(ZrToken("v"));
    write(writer);
    const std::string text = out.str();
    const std::size_t begin = text.find("v=\"") + 3;
    return text.substr(begin, text.find('"', begin) - begin);
  };
  std::ostringstream fresh, showingSigns, precise;
  showingSigns.setf(std::ios_base::showpos);
  precise.precision(12);
  for (const std::ostringstream* settings : {&fresh, &showingSigns, &precise}) {
    for (double real : reals)
      EXPECT_EQ(writerText(*settings, [real](ZrXmlWriter& w) { w.realData(real); }), streamText(*settings, real))
          << real;
    for (long long integer : integers) {
      EXPECT_EQ(writerText(*settings, [integer](ZrXmlWriter& w) { w.integerData(integer); }),
                streamText(*settings, integer))
          << integer;
      const unsigned long long positive = static_cast<unsigned long long>(integer);
      EXPECT_EQ(writerText(*settings, [positive](ZrXmlWriter& w) { w.unsignedData(positive); }),
                streamText(*settings, positive))
          << positive;
    }
  }
}

// The pieces of a call reach the stream when the call returns, and the stream's state follows as with
// the stream's own write(): a stream that is not good takes nothing, a short write makes it bad.
TEST(ZrXmlWriter, OutputReachesTheStreamCallByCallAndFailuresShowInItsState) {
  std::ostringstream out;
  ZrXmlWriter writer("o.xml", out);
  writer.writeStartTag(ZrToken(A, "r"));
  EXPECT_EQ(out.str(), "<r");
  writer.setAttributeName(ZrToken("k"));
  writer.data(std::string("v"));
  EXPECT_EQ(out.str(), "<r k=\"v\"");
  writer.writeEndTag();
  EXPECT_EQ(out.str(), "<r k=\"v\"/>\n");

  std::ostringstream failed;
  failed.setstate(std::ios_base::failbit);
  ZrXmlWriter toFailed("o.xml", failed);
  toFailed.writeStartTag(ZrToken(A, "r"));
  EXPECT_TRUE(failed.fail());
  EXPECT_EQ(failed.str(), "");

  // A buffer that takes three bytes and no more.
  struct ThreeBytes : std::streambuf {
    std::streamsize xsputn(const char*, std::streamsize count) override {
      const std::streamsize taken = std::min<std::streamsize>(count, 3 - written);
      written += taken;
      return taken;
    }
    std::streamsize written = 0;
  } small;
  std::ostream narrow(&small);
  ZrXmlWriter toNarrow("o.xml", narrow);
  toNarrow.writeStartTag(ZrToken(A, "root"));
  EXPECT_TRUE(narrow.bad());
  EXPECT_EQ(small.written, 3);
}

TEST(ZrXmlWriter, SchemaFileNameRule) {
  const char* const cases[][3] = {
      {"/data/robot.xml", "http://www.zrtoolkit.org/namespace/cr", "robot.cr.xsd"},
      {"C:\\models\\robot.xml", "cr", "robot.cr.xsd"},
      {"/data/robot", "http://x.org/cr", "robot.cr.xsd"},
      {"robot.v2.xml", "http://x.org/cr", "robot.v2.cr.xsd"},
      {"", "cr", ".cr.xsd"}};
  for (const auto& c : cases) EXPECT_EQ(ZrXmlWriter::schemaFileName(c[0], c[1]), c[2]) << c[0];
}

TEST(ZrXmlWriter, LanguageSelectionAndClassDefaults) {
  const std::string declaration = "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?>";
  ZrXmlWriter plain;
  EXPECT_EQ(plain.indent() + plain.header(), " " + declaration);
  EXPECT_TRUE(plain.writeDefaultDataFlag());

  ZrXmlWriter w;
  w.setLanguageSelection(ZrXmlWriter::TOOLKIT_MARKUP);
  const std::string sheet = w.styleSheet();
  EXPECT_EQ(w.indent(), "  ");
  EXPECT_EQ(sheet.rfind("<?xml-stylesheet type=\"text/xsl\" href=\"http", 0), 0u) << sheet;
  EXPECT_EQ(w.schemaInstance(), "xmlns:xsi=\"" + XSI + "\"");
  w.setLanguageSelection(static_cast<ZrXmlWriter::LANGUAGE>(7));  // unknown: nothing changes
  EXPECT_EQ(w.styleSheet(), sheet);
  w.setIndent("\t");
  w.setLanguageSelection(ZrXmlWriter::PLAIN_XML);
  EXPECT_EQ(w.indent() + w.header() + w.styleSheet() + w.schemaInstance() + w.schemaLocation(), "  " + declaration);

  // Defaults reach only writers made afterwards.
  ZrXmlWriter::setDefaultLanguageSelection(ZrXmlWriter::TOOLKIT_MARKUP);
  ZrXmlWriter::setDefaultForWriteDefaultDataFlag(false);
  ZrXmlWriter::setDefaultNamespaceComplete(true);
  ZrXmlWriter::setDefaultLosslessReals(true);
  ZrXmlWriter::setDefaultEscapeMarkup(true);
  ZrXmlWriter after;
  EXPECT_EQ(after.indent() + after.styleSheet(), "  " + sheet);
  EXPECT_FALSE(after.writeDefaultDataFlag());
  EXPECT_TRUE(after.namespaceComplete() && after.losslessReals() && after.escapeMarkup());
  EXPECT_FALSE(plain.namespaceComplete() || plain.losslessReals() || plain.escapeMarkup());
  ZrXmlWriter::setDefaultNamespaceComplete(false);
  ZrXmlWriter::setDefaultLosslessReals(false);
  ZrXmlWriter::setDefaultEscapeMarkup(false);
  EXPECT_EQ(plain.indent() + plain.styleSheet(), " ");  // made before: unchanged
  ZrXmlWriter::setDefaultLanguageSelection(ZrXmlWriter::PLAIN_XML);
  ZrXmlWriter::setDefaultIndent(" ");
  ZrXmlWriter::setDefaultForWriteDefaultDataFlag(true);
  EXPECT_TRUE(ZrXmlWriter::defaultStyleSheet().empty());
}

TEST(ZrXmlWriter, CopiesShareTheStreamButNotTheirState) {
  std::ostringstream out;
  ZrXmlWriter original("c.xml", out);
  original.valueStream().precision(3);
  run(original, "<a:r <b:x");
  ZrXmlWriter copy(original), assigned;
  assigned = original;
  for (ZrXmlWriter* w : {&copy, &assigned}) {
    EXPECT_EQ(w->output(), &out);
    EXPECT_EQ(w->filename() + std::to_string(w->depth()) + std::to_string(w->mode()), "c.xml21");
  }
  copy.setIndent("    ");
  copy << 3.14159;
  run(copy, "/ <a:y =2 / /");
  const std::string byCopy = "<r>\n <b:x" + xB + ">3.14</b:x>\n    <y>2</y>\n</r>\n";
  EXPECT_EQ(out.str(), byCopy);
  run(original, "=o /");  // the original's stack, buffer and indent are its own
  EXPECT_EQ(out.str(), byCopy + ">o</b:x>\n");
}

// xmllint must accept every namespace-complete document without a diagnostic: it reports namespace
// errors (an undeclared prefix) but still exits with 0, so its output has to be empty too.
TEST(ZrXmlWriter, XmllintAcceptsNamespaceCompleteDocuments) {
  if (std::system("command -v xmllint >/dev/null 2>&1") != 0) GTEST_SKIP() << "xmllint is not installed";
  const std::string body =
      " @version=3.0.0 <a:name =arm / <a:empty / <b:pose @frame=base <b:position =1.5 =-2 =1e-09 / <b:unset /"
      " <a:note =default_again / / <a:samples @size=25 ^group" + items(25) + " / / <b:flags ^element =1 / /"
      " <u:part <x:odd <a:nil / / <c:d <a:outer <u:part / / / / /";
  const std::pair<const char*, std::string> documents[] = {
      {"plain.xml", "Ha:robot" + body},
      {"markup.xml", "Ha:robot" + body},
      {"headerless.xml", "<a:robot" + body},
      {"nilroot.xml", "Ha:robot /"},
      {"broken.xml", "<a:r <b:x @at"},  // proves that the check notices a fault
  };
  ZrTest::TempDir dir;
  for (const auto& document : documents) {
    const std::string path = dir.file(document.first), report = path + ".report";
    {
      std::ofstream out(path, std::ios::binary);
      ZrXmlWriter writer(path, out);
      writer.setNamespaceComplete(true);
      if (document.first == std::string("markup.xml")) writer.setLanguageSelection(ZrXmlWriter::TOOLKIT_MARKUP);
      run(writer, document.second);
    }
    int status = std::system(("xmllint --noout '" + path + "' >'" + report + "' 2>&1").c_str());
    std::string diagnostics = ZrTest::readFile(report);
    bool accepted = status == 0 && diagnostics.empty();
    EXPECT_EQ(accepted, document.first != std::string("broken.xml"))
        << document.first << "\n" << diagnostics << ZrTest::readFile(path);
  }
}

}  // namespace
