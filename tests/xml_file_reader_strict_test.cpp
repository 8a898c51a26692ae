// Strict mode: one document per well-formedness rule, read in both modes, and well-formed documents whose
// events strict mode leaves as they are.
#include "xml_file_reader_trace.h"

#include <ZrXmlWellFormednessChecker.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

namespace {

using Messages = std::vector<std::string>;

using ZrTest::traceIn;

std::string fault(const std::string& rule) { return "file not well formed.\n\t" + rule + "@1"; }

// A tag with count attributes a0, a1, ... followed by the attribute named again.
std::string manyAttributes(int count, const std::string& again) {
  std::string tag = "<doc";
  for (int i = 0; i < count; ++i) tag += " a" + std::to_string(i) + "='" + std::to_string(i) + "'";
  return tag + " " + again + "='x'/>";
}

TEST(ZrXmlFileReaderStrict, EachRuleIsReportedInStrictModeOnly) {
  struct Case {
    const char* rule;
    std::string document;
    std::string strictFault;  // among the strict messages, beside those of the forgiving mode
  };
  const std::string threePrefixes = "<r xmlns:a=\"u\" xmlns:c=\"u\"><e a:x=\"1\" b:x=\"2\" c:x=\"3\"/></r>";
  const Case cases[] = {
      {"declaration target in capitals", "<?XML version=\"1.0\"?><doc/>", "Reserved processing instruction target: XML"},
      {"declaration not first", " <?xml version=\"1.0\"?><doc/>", "XML declaration not at the start of the document."},
      {"declaration without version", "<?xml encoding=\"UTF-8\"?><doc/>", "Malformed XML declaration."},
      {"declaration with a bad encoding", "<?xml version=\"1.0\" encoding=\"8bit\"?><doc/>", "Malformed XML declaration."},
      {"unbound element prefix", "<a:foo/>", "Prefix not declared: a"},
      {"unbound attribute prefix", "<doc p:x=\"1\"/>", "Prefix not declared: p"},
      {"prefix undeclared with an empty URI", "<doc xmlns:p=\"\"/>", "Namespace declaration not allowed: xmlns:p"},
      {"name starting with a digit", "<0A/>", "Invalid name: 0A"},
      {"name with two colons", "<a:b:c xmlns:a=\"u\"/>", "Invalid name: a:b:c"},
      {"bare ampersand", "<doc>& </doc>", "'&' not followed by a reference."},
      {"undefined entity", "<doc>&foo;</doc>", "Undefined entity reference: &foo;"},
      {"two root elements", "<doc/><doc/>", "More than one root element: doc"},
      {"element left open", "<doc>", "Element not closed: doc"},
      {"attribute twice", "<doc a=\"1\" a=\"2\"/>", "Attribute specified twice: a"},
      {"attribute twice among few", manyAttributes(5, "a3"), "Attribute specified twice: a3"},
      {"attribute twice among many", manyAttributes(40, "a3"), "Attribute specified twice: a3"},
      {"attribute twice by namespace", "<doc xmlns:p=\"u\" xmlns:q=\"u\" p:a=\"1\" q:a=\"2\"/>",
       "Attribute specified twice: q:a"},
      {"no blank between attributes", "<doc a=\"1\"b=\"2\"/>", "White space required between attributes."},
      // Tags that look clean up to a point: each goes the long way, or is settled by the declarations in scope.
      {"attribute twice among sixteen", manyAttributes(16, "a3"), "Attribute specified twice: a3"},
      {"'<' deep in a long value", "<doc a=\"0123456789abcdef0123<x\"/>", "'<' not allowed in attribute value."},
      {"second root with attributes", "<doc/><doc a=\"1\"/>", "More than one root element: doc"},
      {"prefix declared on a closed sibling", "<r><a xmlns:p=\"u\"/><p:b/></r>", "Prefix not declared: p"},
      {"attribute prefix out of scope", "<r><a xmlns:p=\"u\"/><b p:x=\"1\"/></r>", "Prefix not declared: p"},
      {"attribute name with two colons", "<r xmlns:a=\"u\"><e a:b:c=\"1\"/></r>", "Invalid name: a:b:c"},
      // Two names taking turns at one depth, and a declaration made again by the next record.
      {"prefix gone when its name comes back", "<r><p:a xmlns:p=\"u\"/><b/><p:a/></r>", "Prefix not declared: p"},
      {"end tag of a name come back", "<r xmlns:p=\"u\" xmlns:q=\"u\"><p:a/><q:a/><p:a></q:a></r>",
       "End tag does not match start tag: </q:a> closes <p:a>"},
      {"record binding its prefix to no URI", "<r><a xmlns:p=\"u\"/><a xmlns:p=\"\"/></r>",
       "Namespace declaration not allowed: xmlns:p"},
      // One local name through three prefixes, one of them undeclared: each fault said once.
      {"undeclared prefix beside a name written twice", threePrefixes, "Prefix not declared: b"},
      {"name written twice beside an undeclared prefix", threePrefixes, "Attribute specified twice: c:x"},
      {"-- inside a comment", "<doc><!-- a -- b --></doc>", "Comment contains extra -- in it."},
      {"comment ending in --->", "<doc><!--x---></doc>", "Comment contains extra -- in it."},
      {"processing instruction without target", "<doc><?" "?></doc>", "Processing instruction without target."},
      {"]]> in text", "<doc>a]]>b</doc>", "']]>' not allowed in text."},
      {"control character", "<doc>a\x01z</doc>", "Character not allowed in XML: #x01"},
      {"'<' in an attribute value", "<doc a=\"<\"/>", "'<' not allowed in attribute value."},
      {"document type after the root", "<doc/><!DOCTYPE doc>", "Document type declaration after the root element."},
  };
  for (const Case& c : cases) {
    const Messages forgiving = traceIn(false, c.document).messages;
    const Messages strict = traceIn(true, c.document).messages;
    EXPECT_EQ(std::count(forgiving.begin(), forgiving.end(), fault(c.strictFault)), 0) << c.rule;
    EXPECT_EQ(std::count(strict.begin(), strict.end(), fault(c.strictFault)), 1)
        << c.rule << "\n" << ::testing::PrintToString(strict);
  }
}

// Documents that are well-formed XML: strict mode reports nothing, and reads them as it should.
TEST(ZrXmlFileReaderStrict, WellFormedDocumentsPassWithTheirEvents) {
  struct Case {
    const char* name;
    std::string document;
    std::vector<std::string> events;
  };
  const Case cases[] = {
      {"CDATA section is content", "<doc><![CDATA[a<b>&amp;]]></doc>", {"1 doc", "4 doc 'a<b>&amp;'", "0"}},
      {"CDATA joins text", "<doc>x &lt; <![CDATA[<y>]]></doc>", {"1 doc", "4 doc 'x < <y>'", "0"}},
      {"mixed content", "<doc>a<b/>c</doc>", {"1 doc", "3 b", "2 doc", "0"}},
      {"'>' in an attribute value", "<doc a=\"x>y\" b='1'/>", {"3 doc a=x>y b=1", "0"}},
      {"quotes of the other kind inside values", "<doc a=\"it's > ok, a long value\" b='say \"hi\" > x'/>",
       {"3 doc a=it's > ok, a long value b=say \"hi\" > x", "0"}},
      {"'>' in a comment", "<doc><!-- a > b --></doc>", {"1 doc", "2 doc", "0"}},
      {"byte-order mark and declaration", "\xEF\xBB\xBF<?xml version=\"1.0\" encoding=\"UTF-8\" standalone='no'?><doc/>",
       {"3 doc", "0"}},
      {"document type with an internal subset",
       "<!DOCTYPE doc [<!ELEMENT doc (#PCDATA)> <!ATTLIST doc a CDATA \"x>y\"> <!-- ]> -->]>\n<doc/>", {"3 doc", "0"}},
      {"namespaces in use", "<p:doc xmlns:p=\"urn:p\" xml:lang=\"en\"><p:e p:a=\"1\" xmlns=\"urn:d\"/></p:doc>",
       {"1 doc lang=en", "3 e a=1", "2 doc", "0"}},
      {"processing instruction", "<doc><?pi some data?></doc>", {"1 doc", "2 doc", "0"}},
      {"references", "<doc a='&#x3C;&quot;'>&lt;&#65;&gt;</doc>", {"1 doc a=<\"", "4 doc '<A>'", "0"}},
      {"entity of a document type", "<!DOCTYPE doc [<!ENTITY e \"x\">]><doc>&e;</doc>", {"1 doc", "4 doc 'x'", "0"}},
      {"white space around '='", "<doc a = \"1\"\n b\t=\t'2' />", {"3 doc a=1 b=2", "0"}},
      {"names beginning with x beside others, handed out by name", "<doc x=\"1\" b=\"2\" xy=\"3\"/>", {"3 doc b=2 x=1 xy=3", "0"}},
      {"reference past sixteen bytes of a value", "<doc a=\"0123456789abcdefgh&amp;i\" b=\"&#65;\"/>",
       {"3 doc a=0123456789abcdefgh&i b=A", "0"}},
      {"name above ASCII", "<doc><\xC3\xA9t\xC3\xA9 a=\"1\"/></doc>", {"1 doc", "3 \xC3\xA9t\xC3\xA9 a=1", "2 doc", "0"}},
      {"prefix redeclared to its URI", "<p:r xmlns:p=\"u\"><p:e xmlns:p=\"u\" p:a=\"1\"/></p:r>",
       {"1 r", "3 e a=1", "2 r", "0"}},
  };
  for (const Case& c : cases) {
    const ZrTest::Trace strict = traceIn(true, c.document);
    EXPECT_EQ(strict.messages, Messages()) << c.name;
    EXPECT_EQ(strict.events, c.events) << c.name;
  }
}

// The shipped documents are well-formed: strict mode reads them with the same events and no report.
TEST(ZrXmlFileReaderStrict, ShippedDocumentsReadTheSameInBothModes) {
  for (const char* name : {"robotCell.xml", "plant.xml", "plantLineA.xml", "plantLineB.xml"}) {
    std::ifstream in(std::string(ZR_SAMPLES_DIR) + "/" + name, std::ios::binary);
    const std::string document((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    const ZrTest::Trace forgiving = traceIn(false, document), strict = traceIn(true, document);
    EXPECT_EQ(strict.events, forgiving.events) << name;
    EXPECT_EQ(strict.messages, Messages()) << name;
  }
}

TEST(ZrXmlWellFormednessChecker, QualifiedNames) {
  for (const char* name : {"a", "_x", "p:a", "a-b.c1", "\xC3\xA9t\xC3\xA9"}) EXPECT_TRUE(ZrXmlWellFormednessChecker::isQualifiedName(name)) << name;
  for (const char* name : {"", "1a", "-a", ":a", "a:", "a:b:c", "a b", "a:1"})
    EXPECT_FALSE(ZrXmlWellFormednessChecker::isQualifiedName(name)) << name;
}

}  // namespace
