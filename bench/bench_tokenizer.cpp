// Tokenizer throughput on three kinds of generated documents of at least 20 MB each, read from memory:
// attribute-heavy, content-heavy (long lists of numbers) and deeply nested. Each reader does comparable
// work: it visits every element, takes every attribute value and every text run.
#include <ZrXmlFileReader.h>
#include <ZrPrint.h>

#include <benchmark/benchmark.h>

#include <cstdio>
#include <istream>
#include <random>
#include <streambuf>
#include <string>

#ifdef ZR_BENCH_HAVE_EXPAT
#include <expat.h>
#endif
#ifdef ZR_BENCH_HAVE_LIBXML2
#include <libxml/xmlreader.h>
#endif

namespace {

const size_t theDocumentSize = 24u << 20;

std::string number(std::mt19937& random) {
  char text[32];
  std::snprintf(text, sizeof text, "%.6g", std::uniform_real_distribution<double>(-1000.0, 1000.0)(random));
  return text;
}

// Robots with joints and points: many short tags with several attributes each.
std::string attributeHeavyDocument() {
  std::mt19937 random(20240501);
  std::string document =
      "<?xml version=\"1.0\"?>\n<cell xmlns=\"http://www.zrtoolkit.org/namespace/cr\" version=\"3.0.0\">\n";
  for (int robot = 0; document.size() < theDocumentSize; ++robot) {
    document += "  <robot name=\"robot" + std::to_string(robot) + "\" mass=\"" + number(random) + "\" mode=\"auto\">\n";
    for (int joint = 0; joint < 6; ++joint)
      document += "    <joint name=\"j" + std::to_string(joint) + "\" min=\"" + number(random) + "\" max=\"" +
                  number(random) + "\" mass=\"" + number(random) + "\"/>\n";
    document += "    <path size=\"8\">\n";
    for (int point = 0; point < 8; ++point)
      document += "      <element x=\"" + number(random) + "\" y=\"" + number(random) + "\" z=\"" + number(random) +
                  "\"/>\n";
    document += "    </path>\n  </robot>\n";
  }
  return document + "</cell>\n";
}

// Trajectories as long lists of numbers in element content.
std::string contentHeavyDocument() {
  std::mt19937 random(20240502);
  std::string document = "<?xml version=\"1.0\"?>\n<trajectories>\n";
  while (document.size() < theDocumentSize) {
    document += "  <values size=\"2000\">";
    for (int i = 0; i < 2000; ++i) document += (i % 10 == 0 ? "\n    " : " ") + number(random);
    document += "\n  </values>\n";
  }
  return document + "</trajectories>\n";
}

// Chains of 1000 nested elements, each with an attribute, ending in a short text.
std::string deeplyNestedDocument() {
  std::mt19937 random(20240503);
  const int depth = 1000;
  std::string document = "<?xml version=\"1.0\"?>\n<forest>\n";
  while (document.size() < theDocumentSize) {
    for (int level = 0; level < depth; ++level) document += "<node level=\"" + std::to_string(level) + "\">";
    document += number(random);
    for (int level = 0; level < depth; ++level) document += "</node>";
    document += "\n";
  }
  return document + "</forest>\n";
}

const std::string& documentOf(int kind) {
  static const std::string documents[] = {attributeHeavyDocument(), contentHeavyDocument(), deeplyNestedDocument()};
  return documents[kind];
}

const char* const theKindNames[] = {"attributes", "content", "nested"};

// Reads a document in memory without copying it.
class MemoryBuffer : public std::streambuf {
 public:
  explicit MemoryBuffer(const std::string& text) {
    char* begin = const_cast<char*>(text.data());
    setg(begin, begin, begin + text.size());
  }
};

struct Tally {
  size_t elements = 0;
  size_t attributeBytes = 0;
  size_t textBytes = 0;
};

void finish(benchmark::State& state, const std::string& document, const Tally& tally) {
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * static_cast<int64_t>(document.size()));
  state.counters["elements"] = static_cast<double>(tally.elements);
  state.SetLabel(theKindNames[state.range(0)]);
}

void readWithZrXml(benchmark::State& state, bool expandReferences, bool strict = false) {
  const std::string& document = documentOf(static_cast<int>(state.range(0)));
  Tally tally;
  for (auto _ : state) {
    tally = Tally();
    MemoryBuffer buffer(document);
    std::istream in(&buffer);
    ZrXmlFileReader reader("bench.xml", in);
    reader.setExpandReferences(expandReferences);
    reader.setStrict(strict);
    for (int mode = reader.readXml(); mode != 0 && mode != 5; mode = reader.readXml()) {
      if (mode == 1 || mode == 3) {
        ++tally.elements;
        while (reader.remainingNumOfAttributes() > 0) tally.attributeBytes += reader.attributeValue().size();
      } else if (mode == 4) {
        tally.textBytes += reader.content().size();
      }
    }
    benchmark::DoNotOptimize(tally);
  }
  finish(state, document, tally);
}

void BM_zrXml(benchmark::State& state) { readWithZrXml(state, false); }
// The cost of markup-safe reading: every content and attribute value is searched for references.
void BM_zrXmlExpandingReferences(benchmark::State& state) { readWithZrXml(state, true); }
BENCHMARK(BM_zrXmlExpandingReferences)->DenseRange(0, 2)->Unit(benchmark::kMillisecond);
// The cost of strict mode: every name, attribute, text and comment checked for well-formedness.
void BM_zrXmlStrict(benchmark::State& state) { readWithZrXml(state, false, true); }
BENCHMARK(BM_zrXmlStrict)->DenseRange(0, 2)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_zrXml)->DenseRange(0, 2)->Unit(benchmark::kMillisecond);

#ifdef ZR_BENCH_HAVE_EXPAT
void XMLCALL expatStart(void* data, const XML_Char*, const XML_Char** attributes) {
  Tally& tally = *static_cast<Tally*>(data);
  ++tally.elements;
  for (int i = 0; attributes[i]; i += 2) tally.attributeBytes += std::char_traits<char>::length(attributes[i + 1]);
}
void XMLCALL expatEnd(void*, const XML_Char*) {}
void XMLCALL expatText(void* data, const XML_Char*, int length) {
  static_cast<Tally*>(data)->textBytes += static_cast<size_t>(length);
}

void BM_expat(benchmark::State& state) {
  const std::string& document = documentOf(static_cast<int>(state.range(0)));
  Tally tally;
  for (auto _ : state) {
    tally = Tally();
    XML_Parser parser = XML_ParserCreate(nullptr);
    XML_SetUserData(parser, &tally);
    XML_SetElementHandler(parser, expatStart, expatEnd);
    XML_SetCharacterDataHandler(parser, expatText);
    if (XML_Parse(parser, document.data(), static_cast<int>(document.size()), 1) == XML_STATUS_ERROR)
      state.SkipWithError(XML_ErrorString(XML_GetErrorCode(parser)));
    XML_ParserFree(parser);
    benchmark::DoNotOptimize(tally);
  }
  finish(state, document, tally);
}
BENCHMARK(BM_expat)->DenseRange(0, 2)->Unit(benchmark::kMillisecond);
#endif

#ifdef ZR_BENCH_HAVE_LIBXML2
void BM_libxml2Reader(benchmark::State& state) {
  const std::string& document = documentOf(static_cast<int>(state.range(0)));
  Tally tally;
  for (auto _ : state) {
    tally = Tally();
    xmlTextReaderPtr reader = xmlReaderForMemory(document.data(), static_cast<int>(document.size()), nullptr,
                                                 nullptr, XML_PARSE_HUGE | XML_PARSE_NONET);
    int status;
    while ((status = xmlTextReaderRead(reader)) == 1) {
      int type = xmlTextReaderNodeType(reader);
      if (type == XML_READER_TYPE_ELEMENT) {
        ++tally.elements;
        while (xmlTextReaderMoveToNextAttribute(reader) == 1) {
          const xmlChar* value = xmlTextReaderConstValue(reader);
          if (value) tally.attributeBytes += std::char_traits<char>::length(reinterpret_cast<const char*>(value));
        }
      } else if (type == XML_READER_TYPE_TEXT) {
        const xmlChar* value = xmlTextReaderConstValue(reader);
        if (value) tally.textBytes += std::char_traits<char>::length(reinterpret_cast<const char*>(value));
      }
    }
    if (status != 0) state.SkipWithError("libxml2 reader failed");
    xmlFreeTextReader(reader);
    benchmark::DoNotOptimize(tally);
  }
  finish(state, document, tally);
}
BENCHMARK(BM_libxml2Reader)->DenseRange(0, 2)->Unit(benchmark::kMillisecond);
#endif

}  // namespace

BENCHMARK_MAIN();
