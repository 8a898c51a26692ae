// Whole traces of awkward documents (attributes out of order and repeated, namespaces redeclared, tags
// and unread attributes across the block edge, references, strict mode, a reader copied mid-tag), each
// compared with a trace kept under tests/data/traces. A trace records, in the order they happen, every
// event with its element's namespace and token, every attribute name (namespace#token) and value in the
// order the reader hands them out, contents, end tags, the line of every event and every message.
//
// After a deliberate change of behaviour the kept traces are written anew with
//   ZR_WRITE_TRACES=1 ctest -R GoldenTrace
// and the difference is read in the commit.
#include <ZrTestSupport.h>
#include <ZrXmlFileReader.h>

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <functional>
#include <memory>
#include <sstream>
#include <string>

namespace {

const std::size_t theBlockEdge = 16383;  // bytes the tokenizer reads at once

struct Recorder {
  ZrTest::PrintCapture& capture;
  std::string text;
  std::size_t messagesSeen = 0;

  void flushMessages() {
    for (; messagesSeen < capture.count(); ++messagesSeen) text += "  ! " + capture.messages()[messagesSeen].second;
  }
  void line(const std::string& entry) {
    flushMessages();
    text += entry + "\n";
  }
};

std::string qualified(const ZrToken& token) { return token.namespaceAndToken(); }

// Takes every attribute: by name for those asked for first, the rest in the reader's order.
void recordAttributes(ZrXmlFileReader& reader, Recorder& out, const std::vector<std::string>& askFirst) {
  out.line("    count " + std::to_string(reader.numOfAttributes()) + " left " +
           std::to_string(reader.remainingNumOfAttributes()));
  for (const std::string& name : askFirst) {
    const std::string found = qualified(reader.attributeName(ZrToken(name)));
    out.line("    ask " + name + " -> " + found + " = '" + reader.attributeValue(ZrToken(name)) + "'");
  }
  while (reader.remainingNumOfAttributes() > 0) {
    const std::string name = qualified(reader.attributeName());
    out.line("    " + name + " = '" + reader.attributeValue() + "'");
  }
}

void recordEvent(ZrXmlFileReader& reader, int mode, Recorder& out, const std::vector<std::string>& askFirst,
                 bool takeAttributes = true) {
  std::string entry = "event " + std::to_string(mode) + " line " + std::to_string(reader.lineCountOfFile()) +
                      " depth " + std::to_string(reader.openElements().size());
  if (mode == 1 || mode == 3) entry += " <" + qualified(reader.element()) + ">";
  if (mode == 2 || mode == 4) entry += " </" + qualified(reader.endTag()) + ">";
  if (mode == 4) entry += " '" + reader.content() + "'";
  out.line(entry);
  if ((mode == 1 || mode == 3) && takeAttributes) recordAttributes(reader, out, askFirst);
}

using Setup = std::function<void(ZrXmlFileReader&)>;

std::string traceOf(const std::string& document, const std::vector<std::string>& askFirst = {},
                    const Setup& setup = {}, bool takeAttributes = true) {
  ZrTest::PrintCapture capture;
  Recorder out{capture, {}};
  {
    std::istringstream in(document);
    ZrXmlFileReader reader("trace.xml", in);
    if (setup) setup(reader);
    for (int i = 0; i < 100000; ++i) {
      const int mode = reader.readXml();
      recordEvent(reader, mode, out, askFirst, takeAttributes);
      if (mode == 5 || (mode == 0 && reader.atEndOfInput())) break;
    }
  }
  out.line("end");
  return out.text;
}

// A start tag whose attributes are left unread while the fast path reads on past the block edge; they
// are taken afterwards, then from a copy of the reader made while some were still unread.
std::string traceOfUnreadAttributesAcrossTheEdge() {
  std::string document = "<cell>\n<path b='2' a='1' c='3' d='4'>\n";
  for (int i = 0; document.size() < 2 * theBlockEdge + 500; ++i)
    document += "<element x='" + std::to_string(i) + "' y='" + std::to_string(-i) + "'/>\n";
  document += "</path>\n<last k='v'/>\n</cell>\n";
  ZrTest::PrintCapture capture;
  Recorder out{capture, {}};
  {
    std::istringstream in(document);
    ZrXmlFileReader reader("trace.xml", in);
    recordEvent(reader, reader.readXml(), out, {});
    int mode = reader.readXml();
    recordEvent(reader, mode, out, {}, false);
    out.line("  take a = '" + reader.attributeValue(ZrToken("a")) + "'");
    std::size_t values = 0;
    std::string last;
    for (std::string value = reader.getAttributeValueFast(); !value.empty(); value = reader.getAttributeValueFast()) {
      ++values;
      last = value;
    }
    out.line("  fast values " + std::to_string(values) + " last '" + last + "' line " +
             std::to_string(reader.lineCountOfFile()));
    ZrXmlFileReader copy(reader);
    out.line("  original b = '" + reader.attributeValue(ZrToken("b")) + "'");
    const std::string copyFirst = qualified(copy.attributeName());
    out.line("  copy first " + copyFirst + " = '" + copy.attributeValue() + "'");
    recordAttributes(reader, out, {});
    recordAttributes(copy, out, {});
    for (int i = 0; i < 10; ++i) {
      mode = reader.readXml();
      recordEvent(reader, mode, out, {});
      if (mode == 0 || mode == 5) break;
    }
  }
  out.line("end");
  return out.text;
}

struct GoldenCase {
  const char* name;
  std::function<std::string()> trace;
};

std::string manyAttributes() {
  std::string tag = "<many";
  for (int i = 40; i > 0; --i) tag += " a" + std::to_string(i % 25) + "='" + std::to_string(i) + "'";
  return tag + " p:a3='prefixed' q#a7='hashed'/>";
}

// Tags cut by the block edge at every offset near it: names, attributes, values and line feeds.
std::string edgeDocument() {
  std::string document = "<root xmlns='urn:r'>\n<!--";
  while (document.size() < theBlockEdge - 40) document += " a comment that fills the first block\n";
  document.resize(theBlockEdge - 40);
  document += "-->\n";
  for (int i = 0; i < 12; ++i)
    document += "<e" + std::to_string(i) + " zz='" + std::to_string(i) + "'\n yy=\"v\n" + std::to_string(i) +
                "\" p:xx='w'>text\n" + std::to_string(i) + "</e" + std::to_string(i) + ">\n";
  return document + "</root>\n";
}

const GoldenCase theCases[] = {
    {"attributes_out_of_order",
     [] {
       return traceOf("<a z='26' b=\"2\" a='1' m='13' b='again' xsi:type='t' xmlns:p='urn:p' p:b='pb' p:y='py'>\n"
                      "<b y='1' x='2'/><b x='3'>t</b>\n<c k='unread' j='ask'/><d/>\n</a>",
                      {"j", "y", "nothing"});
     }},
    {"attributes_left_for_the_next_tag",
     [] {
       return traceOf("<a>\n<b one='1' two='2'/>\n<c/>\n<d three='3'>\n</d>\n</a>", {}, {}, false);
     }},
    {"many_attributes", [] { return traceOf(manyAttributes(), {"a7", "a24", "a3"}); }},
    {"names_with_namespace_parts",
     [] {
       return traceOf("<urn:x#p:a urn:y#q:k='1' k2='2' urn:z#k3='3' x:y:z='4' #='5' a#='6'>"
                      "<urn:w#b/></urn:x#p:a>");
     }},
    {"namespaces_redeclared",
     [] {
       return traceOf("<r xmlns='urn:d' xmlns:a='urn:a'>\n<s xmlns:a='urn:a' xmlns:b='urn:b'>\n"
                      "<t xmlns:b='urn:other' a:x='1' b:x='2'/>\n</s>\n<s xmlns:b='urn:b2' b:y='3'/>\n</r>");
     }},
    {"block_edge", [] { return traceOf(edgeDocument()); }},
    {"unread_attributes_across_the_edge", [] { return traceOfUnreadAttributesAcrossTheEdge(); }},
    {"references_expanded",
     [] {
       return traceOf("<a v='&lt;&#65;&amp;' w='&bad; &#0; &x' v='&dup;'>a &amp; b &#x41;</a>", {},
                      [](ZrXmlFileReader& reader) { reader.setExpandReferences(true); });
     }},
    {"strict_attributes",
     [] {
       return traceOf("<?xml version='1.0'?>\n<a x='1' x='2' p:y='3' xmlns:q='urn:q' q:z='>' w='a&lt;b'>"
                      "<b c='1'd='2'/></a>",
                      {}, [](ZrXmlFileReader& reader) { reader.setStrict(true); });
     }},
    {"lines_across_blocks",
     [] {
       std::string document = "<a>\n";
       for (int i = 0; i < 150; ++i) document += "<v>" + std::to_string(i) + std::string(40, '\n') + "</v>\n";
       return traceOf(document + "<bad>\n</a>\n</bad>\n</a>\n");
     }},
};

std::string goldenPath(const char* name) { return std::string(ZR_TEST_DATA_DIR) + "/traces/" + name + ".txt"; }

TEST(ZrXmlFileReaderGoldenTrace, AwkwardDocumentsGiveTheirKeptTraces) {
  const bool write = std::getenv("ZR_WRITE_TRACES") != nullptr;
  for (const GoldenCase& golden : theCases) {
    const std::string trace = golden.trace();
    if (write) {
      std::ofstream(goldenPath(golden.name), std::ios::binary) << trace;
      continue;
    }
    std::ifstream in(goldenPath(golden.name), std::ios::binary);
    ASSERT_TRUE(in) << goldenPath(golden.name);
    std::stringstream kept;
    kept << in.rdbuf();
    EXPECT_EQ(trace, kept.str()) << golden.name;
  }
}

}  // namespace
