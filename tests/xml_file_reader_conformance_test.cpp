// Strict mode as a conforming checker: encodings, characters, names and the internal subset of a
// document type, one document per rule, each read in both modes; and well-formed documents of the same
// kinds, which strict mode reads without a word and with the events they stand for.
#include "xml_file_reader_trace.h"

#include <ZrXmlCharacters.h>
#include <ZrXmlWellFormednessChecker.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <sstream>
#include <string>
#include <vector>

namespace {

using Messages = std::vector<std::string>;

using ZrTest::traceIn;

std::string fault(const std::string& rule, int line = 1) {
  return "file not well formed.\n\t" + rule + "@" + std::to_string(line);
}

// The fault of an entity whose replacement text is no content, with what is wrong in it.
std::string content(const std::string& entity, const std::string& what) {
  return "Entity's replacement text is not well-formed content: &" + entity + ";\n\t" + what;
}

// A document in UTF-16 of the given byte order, with its byte-order mark, from ASCII text and the code
// units of `units` put in where `text` holds '#'.
std::string utf16(const std::string& text, bool bigEndian, std::vector<unsigned> units = {}) {
  std::string bytes = bigEndian ? "\xFE\xFF" : "\xFF\xFE";
  std::size_t next = 0;
  for (char c : text) {
    const unsigned unit = c == '#' ? units.at(next++) : static_cast<unsigned char>(c);
    const char high = static_cast<char>(unit >> 8), low = static_cast<char>(unit & 0xFF);
    bytes += bigEndian ? std::string{high, low} : std::string{low, high};
  }
  return bytes;
}

// Entities that refer to the one before ten times, `levels` deep: the last stands for 10^levels copies
// of the first.
std::string laughs(int levels) {
  std::string subset = "<!ENTITY e0 \"0123456789\">";
  for (int level = 1; level <= levels; ++level) {
    subset += "<!ENTITY e" + std::to_string(level) + " \"";
    for (int i = 0; i < 10; ++i) subset += "&e" + std::to_string(level - 1) + ";";
    subset += "\">";
  }
  return "<!DOCTYPE r [" + subset + "]><r>&e" + std::to_string(levels) + ";</r>";
}

TEST(ZrXmlFileReaderConformance, EachRuleIsReportedInStrictModeOnly) {
  struct Case {
    const char* rule;
    std::string document;
    std::string strictFault;  // among the strict messages, beside those of the forgiving mode
    int line = 1;
  };
  // Two defaults naming the entity of a million copies: the first passes the limit, the second is let be.
  const std::string laughsInDefault =
      laughs(6).replace(laughs(6).find("]>"), 2, "<!ATTLIST r x CDATA '&e6;' y CDATA '&e6;'>]>");
  const std::string latin1InUtf8 = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<r>caf\xE9</r>";
  const Case cases[] = {
      // encodings
      {"Latin-1 bytes in a document declared UTF-8", latin1InUtf8, "Invalid UTF-8: bytes #xE9 #x3C form no character.", 2},
      {"Latin-1 bytes without a declaration", "<r>caf\xE9</r>", "Invalid UTF-8: bytes #xE9 #x3C form no character."},
      {"continuation byte alone", "<r>\x80</r>", "Invalid UTF-8: bytes #x80 form no character."},
      {"overlong form", "<r>\xC0\xAF</r>", "Invalid UTF-8: overlong form #xC0 #xAF."},
      {"overlong three-byte form", "<r>\xE0\x80\xAF</r>", "Invalid UTF-8: overlong form #xE0 #x80 #xAF."},
      {"encoded surrogate", "<r>\xED\xA0\x80</r>", "Invalid UTF-8: encoded surrogate #xD800."},
      {"code point above U+10FFFF", "<r>\xF4\x90\x80\x80</r>", "Invalid UTF-8: code point #x110000 above #x10FFFF."},
      {"document ends inside a character", "<r/>\xE2\x82", "Invalid UTF-8: the document ends inside a character."},
      {"unknown encoding", "<?xml version=\"1.0\" encoding=\"x-zr-no-such\"?><r/>",
       "Unknown encoding: x-zr-no-such; the document is read as UTF-8."},
      {"UTF-8 mark, another encoding declared", "\xEF\xBB\xBF<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?><r/>",
       "Encoding declaration does not match the document: ISO-8859-1"},
      {"UTF-16 declared, bytes of one byte each", "<?xml version=\"1.0\" encoding=\"UTF-16\"?><r/>",
       "Encoding declaration does not match the document: UTF-16"},
      {"UTF-16 document declaring another encoding", utf16("<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?><r/>", false),
       "Encoding declaration does not match the document: ISO-8859-1"},
      {"byte above 127 in US-ASCII", "<?xml version=\"1.0\" encoding=\"US-ASCII\"?><r>\xE9</r>",
       "Invalid US-ASCII: byte #xE9 is no character."},
      {"unpaired surrogate in UTF-16", utf16("<r>#</r>", true, {0xD800}), "Invalid UTF-16: unpaired surrogate #xD800."},
      {"byte of no character in Shift_JIS", "<?xml version=\"1.0\" encoding=\"Shift_JIS\"?><r>\xA0</r>",
       "Invalid Shift_JIS: byte #xA0 begins no character."},
      // characters
      {"U+FFFE as bytes", "<r>\xEF\xBF\xBE</r>", "Character not allowed in XML: #xFFFE"},
      {"U+FFFF as bytes", "<r a=\"\xEF\xBF\xBF\"/>", "Character not allowed in XML: #xFFFF"},
      {"control character in a comment", "<r><!-- \x07 --></r>", "Character not allowed in XML: #x07"},
      {"control character on a later line", "<r>\n\n\x1B</r>", "Character not allowed in XML: #x1B", 3},
      // names
      {"name starting with a combining character", "<\xCC\x80r/>", "Invalid name: \xCC\x80r"},
      {"name holding a multiplication sign", "<a\xC3\x97/>", "Invalid name: a\xC3\x97"},
      {"local name starting with a combining character", "<p:\xCC\x80 xmlns:p=\"u\"/>", "Invalid name: p:\xCC\x80"},
      {"attribute name starting with a middle dot", "<r \xC2\xB7=\"1\"/>", "Invalid name: \xC2\xB7"},
      {"end tag with another prefix for the same namespace", "<a:x xmlns:a=\"u\" xmlns:b=\"u\"></b:x>",
       "End tag does not match start tag: </b:x> closes <a:x>"},
      // namespace names are the characters their references stand for
      {"one namespace written with and without a character reference",
       "<r xmlns:a=\"u~\" xmlns:b=\"u&#x7E;\"><e a:x=\"1\" b:x=\"2\"/></r>", "Attribute specified twice: b:x"},
      {"one namespace written with an entity",
       "<!DOCTYPE r [<!ENTITY t \"~\">]><r xmlns:a=\"u~\" xmlns:b=\"u&t;\"><e a:x=\"1\" b:x=\"2\"/></r>",
       "Attribute specified twice: b:x"},
      {"reserved namespace written with a reference", "<r xmlns:x=\"http://www.w3.org/XML/1998/&#x6E;amespace\"/>",
       "Namespace declaration not allowed: xmlns:x"},
      {"undefined entity in a namespace name", "<r xmlns:a=\"&u;x\"><a:e/></r>", "Undefined entity reference: &u;"},
      // the internal subset
      {"content model mixing ',' and '|'", "<!DOCTYPE r [<!ELEMENT r (a,b|c)>]><r/>", "Malformed element declaration."},
      {"mixed content without '*'", "<!DOCTYPE r [<!ELEMENT r (#PCDATA|a)>]><r/>", "Malformed element declaration."},
      {"unknown attribute type", "<!DOCTYPE r [<!ATTLIST r a BOGUS #IMPLIED>]><r/>",
       "Malformed attribute-list declaration."},
      {"'<' in a default value", "<!DOCTYPE r [<!ATTLIST r a CDATA \"<\">]><r/>", "'<' not allowed in attribute value."},
      {"parameter entity inside a declaration", "<!DOCTYPE r [<!ENTITY % p \"x\"><!ENTITY e \"%p;\">]><r/>",
       "Parameter-entity reference inside a declaration of the internal subset."},
      {"declaration of no known kind", "<!DOCTYPE r [<!FOO r>]><r/>", "Markup declaration not allowed in the internal subset."},
      {"system identifier missing", "<!DOCTYPE r [<!ENTITY e SYSTEM>]><r/>", "Malformed external identifier."},
      {"public identifier character", "<!DOCTYPE r PUBLIC \"a{b\" \"r.dtd\"><r/>",
       "Character not allowed in a public identifier: {"},
      {"comment with -- in the subset", "<!DOCTYPE r [<!-- a -- b -->]><r/>", "Comment contains extra -- in it."},
      {"reserved target in the subset", "<!DOCTYPE r [<?xml x?>]><r/>", "Invalid processing instruction target: xml"},
      {"subset target running into a character of no name", "<!DOCTYPE r [<?bad-pi+?>]><r/>",
       "Invalid processing instruction target: bad-pi+"},
      {"subset target holding a ':'", "<!DOCTYPE r [<?a:b x?>]><r/>", "Invalid processing instruction target: a:b"},
      {"target running into a character of no name", "<r><?_)?></r>", "Invalid name: _)"},
      {"notation name holding a ':'", "<!DOCTYPE r [<!NOTATION a:b SYSTEM \"n\">]><r/>", "Invalid name: a:b"},
      {"undefined parameter entity", "<!DOCTYPE r [%p;]><r/>", "Undefined parameter entity: %p;"},
      {"undefined entity", "<!DOCTYPE r [<!ELEMENT r ANY>]><r>&e;</r>", "Undefined entity reference: &e;"},
      {"entity that refers to itself", "<!DOCTYPE r [<!ENTITY a \"&b;\"><!ENTITY b \"&a;\">]><r>&a;</r>",
       "Entity refers to itself: &a;"},
      {"entity that refers to itself through a default value never taken",
       "<!DOCTYPE r [<!ENTITY a \"&b;\"><!ENTITY b \"&a;\"><!ATTLIST r x CDATA #FIXED \"&a;\">]><r/>",
       "Entity refers to itself: &a;"},
      {"entity bringing '<' into a default value", "<!DOCTYPE r [<!ENTITY l \"&#60;\"><!ATTLIST r x CDATA \"&l;\">]><r/>",
       "'<' not allowed in attribute value."},
      // an entity referred to in content holds content: each is checked on its own, once
      {"entity closing an element it did not open", "<!DOCTYPE r [<!ENTITY e \"</a><a>\">]><r><a>&e;&e;</a></r>",
       content("e", "End tag without its start tag: </a>")},
      {"entity opening an element it does not close", "<!DOCTYPE r [<!ENTITY e \"&#60;a>\">]><r>&e;</r>",
       content("e", "Element not closed: a")},
      {"entity opening a comment that the document closes",
       "<!DOCTYPE r [<!ENTITY e \"&#60;!--\">]><r>&e;--></r>", content("e", "Markup not closed within the entity: <!--")},
      {"entity ending inside a tag: the excerpt cuts no character",
       "<!DOCTYPE r [<!ENTITY e \"<a  b='\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9\">]><r>&e;</r>",
       content("e", "Markup not closed within the entity: <a  b='\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9")},
      {"'<' in a value of a tag in an entity", "<!DOCTYPE r [<!ENTITY e \"<a x='&#60;'/>\">]><r>&e;</r>",
       content("e", "'<' not allowed in attribute value.")},
      {"XML declaration in an entity", "<!DOCTYPE r [<!ENTITY e \"<?xml version='1.0'?>\">]><r>&e;</r>",
       content("e", "Invalid processing instruction target: xml")},
      {"nested entity closing its parent's element",
       "<!DOCTYPE r [<!ENTITY f \"</a>\"><!ENTITY e \"<a>&f;\">]><r>&e;</r>",
       content("f", "End tag without its start tag: </a>")},
      {"entity that refers to itself in a value of its tag", "<!DOCTYPE r [<!ENTITY e \"<a x='&e;'/>\">]><r>&e;</r>",
       "Entity refers to itself: &e;"},
      {"character reference to no character brought in by '&#38;'", "<!DOCTYPE r [<!ENTITY e \"&#38;#1;\">]><r>&e;</r>",
       "Invalid character reference: &#1;"},
      {"reference to an unparsed entity",
       "<!DOCTYPE r [<!NOTATION n SYSTEM \"n\"><!ENTITY u SYSTEM \"u\" NDATA n>]><r>&u;</r>",
       "Reference to an unparsed entity: &u;"},
      {"external entity in an attribute value", "<!DOCTYPE r [<!ENTITY x SYSTEM \"x.xml\">]><r a=\"&x;\"/>",
       "External entity referenced in attribute value: &x;"},
      {"entity bringing '<' into an attribute value", "<!DOCTYPE r [<!ENTITY l \"&#60;\">]><r a=\"&l;\"/>",
       "'<' not allowed in attribute value."},
      // the expansion limit: 10^6 copies of a ten-byte text
      {"entity that expands a million times", laughs(6),
       "Entity expansion passes 1000000 bytes: &e6; and the references after it are not expanded."},
      {"default value that expands a million times", laughsInDefault,
       "Entity expansion passes 1000000 bytes in a default value: &e6;"},
  };
  for (const Case& c : cases) {
    const Messages forgiving = traceIn(false, c.document).messages;
    const Messages strict = traceIn(true, c.document).messages;
    const int line = c.line;
    EXPECT_EQ(std::count(forgiving.begin(), forgiving.end(), fault(c.strictFault, line)), 0) << c.rule;
    EXPECT_EQ(std::count(strict.begin(), strict.end(), fault(c.strictFault, line)), 1)
        << c.rule << "\n" << ::testing::PrintToString(strict);
  }
}

TEST(ZrXmlFileReaderConformance, WellFormedDocumentsPassWithTheirEvents) {
  struct Case {
    const char* name;
    std::string document;
    std::vector<std::string> events;
  };
  std::string tenThousandCopies;
  for (int i = 0; i < 10000; ++i) tenThousandCopies += "0123456789";
  const Case cases[] = {
      {"names above ASCII", "<\xC3\xA9t\xC3\xA9 \xE4\xB8\xAD=\"1\" a\xCC\x80\xC2\xB7-.9=\"2\"/>",
       {"3 \xC3\xA9t\xC3\xA9 a\xCC\x80\xC2\xB7-.9=2 \xE4\xB8\xAD=1", "0"}},
      {"characters of four bytes", "<r>\xF0\x9F\x98\x80</r>", {"1 r", "4 r '\xF0\x9F\x98\x80'", "0"}},
      {"ISO-8859-1 declared", "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?><r a=\"\xE9\">caf\xE9</r>",
       {"1 r a=\xC3\xA9", "4 r 'caf\xC3\xA9'", "0"}},
      {"US-ASCII declared", "<?xml version='1.0' encoding='us-ascii'?><r>x</r>", {"1 r", "4 r 'x'", "0"}},
      {"Shift_JIS through iconv, a trail byte that is '['",
       "<?xml version=\"1.0\" encoding=\"Shift_JIS\"?><r a=\"\x81\x5B\">\x82\xA0\x81\x5B</r>",
       {"1 r a=\xE3\x83\xBC", "4 r '\xE3\x81\x82\xE3\x83\xBC'", "0"}},
      {"UTF-16 little-endian", utf16("<?xml version=\"1.0\" encoding=\"UTF-16\"?><r a=\"#\">#</r>", false, {0xE9, 0x4E2D}),
       {"1 r a=\xC3\xA9", "4 r '\xE4\xB8\xAD'", "0"}},
      {"UTF-16 big-endian with a surrogate pair", utf16("<r>##</r>", true, {0xD83D, 0xDE00}),
       {"1 r", "4 r '\xF0\x9F\x98\x80'", "0"}},
      {"prefix bound again to its URI", "<a xmlns:m=\"urn:m\"><b xmlns:m=\"urn:m\" m:x=\"1\"/></a>",
       {"1 a", "3 b x=1", "2 a", "0"}},
      {"internal entities in content and values",
       "<!DOCTYPE r [<!ENTITY e \"x&#38;amp;y\"><!ENTITY two \"&e;&e;\">]><r a=\"&two;\">&e;!</r>",
       {"1 r a=x&yx&y", "4 r 'x&y!'", "0"}},
      {"a subset of every kind of declaration",
       "<!DOCTYPE r [\n<!ELEMENT r (#PCDATA|a|b)*>\n<!ELEMENT a ((b|c)+,d?)>\n<!ELEMENT b EMPTY>\n<!ELEMENT c ANY>\n"
       "<!ATTLIST r id ID #REQUIRED kind (x|y-1|2z) \"x\" n NOTATION (png) #IMPLIED f CDATA #FIXED 'a>b'>\n"
       "<!NOTATION png PUBLIC \"image/png\">\n<!ENTITY % p \"x\">\n<!ENTITY ext SYSTEM \"e.xml\">\n"
       "<?pi a > b?>\n<!-- c ] > -->\n]>\n<r id=\"i\">&ext;</r>",
       {"1 r id=i", "4 r '&ext;'", "0"}},
      {"subset targets followed by '?>' or white space", "<!DOCTYPE r [<?t?><?t-2.x\td?>]><r/>", {"3 r", "0"}},
      {"entity holding markup: taken as characters, its CDATA section's '&' no reference",
       "<!DOCTYPE r [<!ENTITY q 'v'><!ENTITY e \"<a x='&amp;&q;'>t<!--&c;--><?p &d;?><![CDATA[&foo;]]></a><b/>\">]>"
       "<r>&e;&e;</r>",
       {"1 r", "4 r '<a x='&amp;&q;'>t<!--&c;--><?p &d;?><![CDATA[&foo;]]></a><b/><a x='&amp;&q;'>t<!--&c;--><?p &d;?>"
               "<![CDATA[&foo;]]></a><b/>'",
        "0"}},
      {"namespaces told apart after their references", "<r xmlns:a=\"u&#x7E;\" xmlns:b=\"u&amp;\"><a:e a:x=\"1\" b:x=\"2\"/></r>",
       {"1 r", "3 e x=1", "2 r", "0"}},
      {"external subset: undeclared entities are no fault", "<!DOCTYPE r SYSTEM \"r.dtd\"><r>&nbsp;</r>",
       {"1 r", "4 r '&nbsp;'", "0"}},
      {"parameter entity between declarations", "<!DOCTYPE r [<!ENTITY % p \"\"> %p; <!ENTITY e 'x'>]><r>&e;</r>",
       {"1 r", "4 r '&e;'", "0"}},
      {"entities within the limit", laughs(4), {"1 r", "4 r '" + tenThousandCopies + "'", "0"}},
  };
  for (const Case& c : cases) {
    const ZrTest::Trace strict = traceIn(true, c.document);
    EXPECT_EQ(strict.messages, Messages()) << c.name;
    EXPECT_EQ(strict.events, c.events) << c.name;
  }
}

// Strict mode looks at every byte once, whatever the block edges: a character split over two blocks
// is one character, and a fault past the first block names its own line.
TEST(ZrXmlFileReaderConformance, CharactersAcrossBlockEdges) {
  for (std::size_t pad = 16370; pad < 16390; ++pad) {
    const std::string document = "<r>" + std::string(pad, 'a') + "\xE2\x82\xAC\n\xC3\x28</r>";
    const ZrTest::Trace strict = traceIn(true, document);
    EXPECT_EQ(strict.messages, Messages{fault("Invalid UTF-8: bytes #xC3 #x28 form no character.", 2)}) << pad;
  }
}

// Many declarations in scope and many uses of one prefix: linear time (this took seconds per thousand
// declarations when each use looked along all of them).
TEST(ZrXmlFileReaderConformance, PrefixLookUpDoesNotDependOnTheDeclarationsInScope) {
  std::string document = "<r";
  for (int i = 0; i < 20000; ++i) document += " xmlns:p" + std::to_string(i) + "=\"urn:" + std::to_string(i) + "\"";
  document += ">";
  for (int i = 0; i < 40000; ++i) document += "<p0:e p0:a=\"1\"/>";
  document += "</r>";
  const auto start = std::chrono::steady_clock::now();
  const ZrTest::Trace strict = traceIn(true, document);
  EXPECT_EQ(strict.messages, Messages());
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(5));
}

// Leading zeros do not count against a number's digits; what is left must be a code point.
TEST(ZrXmlCharacters, CharacterReferenceNumbers) {
  const std::pair<const char*, unsigned long> cases[] = {
      {"#65", 65},
      {"#x41", 0x41},
      {"#0000000009", 9},
      {"#x00000000A", 0xA},
      {"#x0000000000000000000000000000000000000041", 0x41},
      {"#x10FFFF", 0x10FFFF},
      {"#x110000", 0},                 // above U+10FFFF
      {"#x0000000110000", 0},          // the same after its zeros
      {"#1114112", 0},                 // U+110000 in decimal
      {"#99999999999999999999999", 0},  // would overflow
      {"#xFFFFFFFFFFFFFFFF41", 0},
      {"#x", 0},
      {"#", 0},
      {"#x4G", 0},
      {"#X41", 0},  // the 'x' is lower case only
  };
  for (const auto& c : cases) EXPECT_EQ(ZrXmlCharacters::characterReferenceCode(c.first), c.second) << c.first;
}

// The forgiving mode, told to expand references, takes the same numbers.
TEST(ZrXmlFileReaderConformance, CharacterReferencesWithLeadingZerosInBothModes) {
  const std::string document = "<r a=\"&#x0000000000000041;\">&#0000000066;&#x000043;</r>";
  ZrXmlFileReader::setDefaultExpandReferences(true);
  const ZrTest::Trace forgiving = traceIn(false, document);
  ZrXmlFileReader::setDefaultExpandReferences(false);
  const ZrTest::Trace strict = traceIn(true, document);
  for (const ZrTest::Trace& trace : {forgiving, strict}) {
    EXPECT_EQ(trace.messages, Messages());
    EXPECT_EQ(trace.events, (std::vector<std::string>{"1 r a=A", "4 r 'BC'", "0"}));
  }
}

TEST(ZrXmlWellFormednessChecker, NameTokensAndNames) {
  for (const char* token : {"a", "1", "-x", ".5", "\xCC\x80", "\xC2\xB7"})
    EXPECT_TRUE(ZrXmlWellFormednessChecker::isNameToken(token)) << token;
  for (const char* token : {"", "a b", "a;", "\xC3\x97", "\xE2\x82"})
    EXPECT_FALSE(ZrXmlWellFormednessChecker::isNameToken(token)) << token;
  EXPECT_FALSE(ZrXmlWellFormednessChecker::isName("\xCC\x80"));
  EXPECT_TRUE(ZrXmlWellFormednessChecker::isName("\xF0\x90\x80\x80"));  // U+10000
  EXPECT_FALSE(ZrXmlWellFormednessChecker::isName("\xF3\xB0\x80\x80"));  // U+F0000, above the name ranges
}

}  // namespace

namespace {

// Reads a document to its end with a reader set up by `setUp`, and returns the events and messages.
template <class SetUp>
ZrTest::Trace traceWith(const std::string& document, SetUp setUp) {
  ZrTest::Trace trace;
  ZrTest::PrintCapture capture;
  {
    std::istringstream in(document);
    ZrXmlFileReader reader("doc.xml", in);
    reader.setStrict(true);
    setUp(reader);
    for (int mode = reader.readXml();; mode = reader.readXml()) {
      trace.events.push_back(ZrTest::describeEvent(reader, mode));
      if (mode == 5 || (mode == 0 && reader.atEndOfInput())) break;
    }
  }
  for (const auto& message : capture.texts()) trace.messages.push_back(ZrTest::shortMessage(message));
  return trace;
}

// Characters of other encodings whose bytes are cut by the edge of a block read: each is decoded whole
// with the block that follows (a block is 16,383 bytes, so UTF-16's code units are cut at every edge).
TEST(ZrXmlFileReaderConformance, EncodedCharactersAcrossBlockEdges) {
  for (std::size_t pad = 8180; pad < 8196; ++pad) {
    std::string text = "<r>" + std::string(pad, 'a') + "##</r>";
    const ZrTest::Trace wide = traceIn(true, utf16(text, false, {0xD83D, 0xDE00}));
    EXPECT_EQ(wide.messages, Messages()) << pad;
    EXPECT_EQ(wide.events.at(1), "4 r '" + std::string(pad, 'a') + "\xF0\x9F\x98\x80'") << pad;
  }
  const std::string declaration = "<?xml version=\"1.0\" encoding=\"Shift_JIS\"?><r>";
  for (std::size_t pad = 16370; pad < 16390; ++pad) {
    const std::string document = declaration + std::string(pad - declaration.size(), 'a') + "\x82\xA0</r>";
    const ZrTest::Trace japanese = traceIn(true, document);
    EXPECT_EQ(japanese.messages, Messages()) << pad;
    EXPECT_EQ(japanese.events.at(1), "4 r '" + std::string(pad - declaration.size(), 'a') + "\xE3\x81\x82'") << pad;
  }
}

// The limit is each reader's own: past it a reference is reported once and kept as written, as are the
// references after it; a reader with the class default expands them all.
TEST(ZrXmlFileReaderConformance, ExpansionLimitIsTheReadersOwn) {
  const std::string document = "<!DOCTYPE r [<!ENTITY e \"0123456789\">]><r>&e;&e;&e;</r>";
  const ZrTest::Trace limited = traceWith(document, [](ZrXmlFileReader& reader) { reader.setMaxEntityExpansion(15); });
  EXPECT_EQ(limited.events, (std::vector<std::string>{"1 r", "4 r '0123456789&e;&e;'", "0"}));
  EXPECT_EQ(limited.messages,
            Messages{fault("Entity expansion passes 15 bytes: &e; and the references after it are not expanded.")});
  const ZrTest::Trace unlimited = traceWith(document, [](ZrXmlFileReader&) {});
  EXPECT_EQ(unlimited.events.at(1), "4 r '012345678901234567890123456789'");
  EXPECT_EQ(unlimited.messages, Messages());
}

// A copy made in the middle of a document goes on in the document's encoding, with its entities.
TEST(ZrXmlFileReaderConformance, CopyGoesOnInTheDocumentsEncoding) {
  const std::string document = "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?><!DOCTYPE r [<!ENTITY e \"\xE9t\xE9\">]>"
                               "<r><a>&e;</a>" + std::string(40000, ' ') + "<b>\xE0</b></r>";
  ZrTest::PrintCapture capture;
  std::istringstream in(document);
  ZrXmlFileReader reader("doc.xml", in);
  reader.setStrict(true);
  EXPECT_EQ(reader.readXml(), 1);
  EXPECT_EQ(reader.readXml(), 1);
  ZrXmlFileReader copy(reader);
  EXPECT_EQ(copy.readXml(), 4);
  EXPECT_EQ(copy.content(), "\xC3\xA9t\xC3\xA9");
  EXPECT_EQ(copy.readXml(), 1);
  EXPECT_EQ(copy.readXml(), 4);
  EXPECT_EQ(copy.content(), "\xC3\xA0");
  EXPECT_TRUE(capture.texts().empty());
}

}  // namespace
