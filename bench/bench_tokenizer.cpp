// Tokenizer throughput beside other XML parsers, side by side in one run, on four kinds of generated
// document at 4 MB and 32 MB each (MB here is 2^20 bytes), all read from memory:
//   attributes  many <item id=".." name=".." x=".." y=".." z=".."/> records under one root
//   content     long lists of numbers in element content
//   deep        chains of 200 nested elements, each with one attribute, a short text at the bottom
//   namespaced  elements and attributes in three prefixed namespaces, a declaration on every record
// Every parser does comparable work: it visits every element, takes the value of every attribute and
// every text it is given, and adds up their lengths in a Tally.
//
// Parsers, in the order each round runs them:
//   ours           ZrXmlFileReader, forgiving (the default)
//   strict         ours with setStrict(true): well-formedness checked throughout
//   expanding      ours with setExpandReferences(true): every value searched for references
//   libxml2Sax     libxml2's SAX2 push parser, fed 16 KiB at a time
//   expat          expat with namespace processing, fed 16 KiB at a time
//   libxml2Reader  libxml2's xmlTextReader over the document in memory
//   pugixml        load_buffer (which copies the document: that copy is pugixml's own cost), then a walk
//                  over every element, attribute and text node of the tree
// The peers are compiled in when their packages are found (ZR_BENCH_HAVE_*).
//
// Round/<kind>/<size>: each iteration is one round that runs every parser once on the document, each
// timed on its own with the thread's CPU time, so that a load on the machine that comes and goes falls
// on all of them alike. Counters, over the rounds:
//   oursMB/s     our throughput, from our median time
//   <peer>/ours  the median of (peer's time / our time): above 1 we are faster, below 1 the peer is
//   strict/ours, expanding/ours  what the checks and the reference search cost over the forgiving mode
// A round count is fixed per size (21 rounds at 4 MB, 7 at 32 MB); ZR_BENCH_ROUNDS=N sets every count.
// Before the rounds every parser reads the document once and the element counts must agree (and our
// tokenizer must report no fault), or the benchmark is skipped with the reason: a parser that gave up
// half way cannot look fast.
//
// The Time column of a round is the sum of all parsers' times in it. Ours/<kind>/<size> (and
// OursStrict/, OursExpanding/) run our tokenizer alone, so that one run can be profiled by itself.
//
// Running (the "Library was built as DEBUG" warning is about Google Benchmark's own package and does
// not touch the times taken here):
//   build/bench/bench_tokenizer --benchmark_filter=Round
//   ZR_BENCH_ROUNDS=3 build/bench/bench_tokenizer --benchmark_filter='Round/.*/4MB'
//   valgrind --tool=callgrind --toggle-collect='*readWithOurs*' build/bench/bench_tokenizer
//       --benchmark_filter='^Ours/attributes/32MB' --benchmark_min_time=0   (one command line)
// --benchmark_min_time=0 runs a single iteration (this Google Benchmark takes no "1x"); the toggle
// leaves the document's generation out of the profile.
#include <ZrPrint.h>
#include <ZrXmlFileReader.h>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <istream>
#include <memory>
#include <random>
#include <streambuf>
#include <string>
#include <time.h>
#include <vector>

#ifdef ZR_BENCH_HAVE_EXPAT
#include <expat.h>
#endif
#ifdef ZR_BENCH_HAVE_LIBXML2
#include <libxml/parser.h>
#include <libxml/xmlreader.h>
#endif
#ifdef ZR_BENCH_HAVE_PUGIXML
#include <pugixml.hpp>
#endif

namespace {

enum Kind { Attributes, Content, Deep, Namespaced, KindCount };
const char* const theKindNames[KindCount] = {"attributes", "content", "deep", "namespaced"};
const size_t theSizesMB[] = {4, 32};
const int SizeCount = 2;
// Fewer rounds at the larger size: each takes eight times as long and its times vary less.
const int theDefaultRounds[SizeCount] = {21, 7};

// The peers are fed in pieces of this size, as a program reading a file would.
const size_t theChunkSize = 16u << 10;

std::string number(std::mt19937& random) {
  char text[32];
  std::snprintf(text, sizeof text, "%.6g", std::uniform_real_distribution<double>(-1000.0, 1000.0)(random));
  return text;
}

// Short tags with several attributes each: the cost of attribute parsing dominates.
std::string attributeHeavyDocument(size_t size) {
  std::mt19937 random(20240501);
  std::string document = "<?xml version=\"1.0\"?>\n<items>\n";
  for (int item = 0; document.size() < size; ++item)
    document += "  <item id=\"" + std::to_string(item) + "\" name=\"item" + std::to_string(item) + "\" x=\"" +
                number(random) + "\" y=\"" + number(random) + "\" z=\"" + number(random) + "\"/>\n";
  return document + "</items>\n";
}

// Trajectories as long lists of numbers in element content: text scanning dominates.
std::string contentHeavyDocument(size_t size) {
  std::mt19937 random(20240502);
  std::string document = "<?xml version=\"1.0\"?>\n<trajectories>\n";
  while (document.size() < size) {
    document += "  <values size=\"2000\">";
    for (int i = 0; i < 2000; ++i) document += (i % 10 == 0 ? "\n    " : " ") + number(random);
    document += "\n  </values>\n";
  }
  return document + "</trajectories>\n";
}

// Chains of 200 nested elements, each with an attribute, ending in a short text: the open-element
// stack and end-tag matching dominate. 200 levels stay below libxml2's default depth limit of 256.
std::string deepDocument(size_t size) {
  std::mt19937 random(20240503);
  const int depth = 200;
  std::string document = "<?xml version=\"1.0\"?>\n<forest>\n";
  while (document.size() < size) {
    for (int level = 0; level < depth; ++level) document += "<node level=\"" + std::to_string(level) + "\">";
    document += number(random);
    for (int level = 0; level < depth; ++level) document += "</node>";
    document += "\n";
  }
  return document + "</forest>\n";
}

// Three namespaces: the root binds b and c, every record binds a again, so a declaration comes and goes
// with each record and every name and attribute has a prefix to resolve.
std::string namespacedDocument(size_t size) {
  std::mt19937 random(20240504);
  std::string document =
      "<?xml version=\"1.0\"?>\n<b:records xmlns:b=\"urn:zr:bench:b\" xmlns:c=\"urn:zr:bench:c\">\n";
  for (int record = 0; document.size() < size; ++record)
    document += "  <a:rec xmlns:a=\"urn:zr:bench:a\" id=\"" + std::to_string(record) + "\" b:x=\"" +
                number(random) + "\" c:y=\"" + number(random) + "\"><b:v c:u=\"" + number(random) + "\">" +
                number(random) + "</b:v><c:w a:t=\"" + number(random) + "\">" + number(random) +
                "</c:w></a:rec>\n";
  return document + "</b:records>\n";
}

// Generated on first use only, so a filtered run builds only the documents it reads.
const std::string& documentOf(int kind, int sizeIndex) {
  static std::unique_ptr<const std::string> documents[KindCount][SizeCount];
  std::unique_ptr<const std::string>& document = documents[kind][sizeIndex];
  if (!document) {
    const size_t size = theSizesMB[sizeIndex] << 20;
    switch (kind) {
      case Attributes: document.reset(new std::string(attributeHeavyDocument(size))); break;
      case Content: document.reset(new std::string(contentHeavyDocument(size))); break;
      case Deep: document.reset(new std::string(deepDocument(size))); break;
      default: document.reset(new std::string(namespacedDocument(size))); break;
    }
  }
  return *document;
}

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

// Each parser reads the whole document into the tally; false (with a reason) when it did not get
// through it.
typedef bool ParseFunction(const std::string& document, Tally& tally, std::string& failure);

// Not inlined, so that a profile can be limited to it (see --toggle-collect above).
__attribute__((noinline)) bool readWithOurs(const std::string& document, Tally& tally, std::string& failure,
                                            bool expandReferences, bool strict) {
  MemoryBuffer buffer(document);
  std::istream in(&buffer);
  ZrXmlFileReader reader("bench.xml", in);
  reader.setExpandReferences(expandReferences);
  reader.setStrict(strict);
  int mode;
  for (mode = reader.readXml(); mode != 0 && mode != 5; mode = reader.readXml()) {
    if (mode == 1 || mode == 3) {
      ++tally.elements;
      while (reader.remainingNumOfAttributes() > 0) tally.attributeBytes += reader.attributeValue().size();
    } else if (mode == 4) {
      tally.textBytes += reader.content().size();
    }
  }
  if (mode == 0 && reader.atEndOfInput()) return true;
  failure = "stopped before the end of the document";
  return false;
}

bool parseOurs(const std::string& document, Tally& tally, std::string& failure) {
  return readWithOurs(document, tally, failure, false, false);
}
// The cost of strict mode: every name, attribute, text and comment checked for well-formedness.
bool parseOursStrict(const std::string& document, Tally& tally, std::string& failure) {
  return readWithOurs(document, tally, failure, false, true);
}
// The cost of markup-safe reading: every content and attribute value is searched for references.
bool parseOursExpanding(const std::string& document, Tally& tally, std::string& failure) {
  return readWithOurs(document, tally, failure, true, false);
}

#ifdef ZR_BENCH_HAVE_LIBXML2
// SAX2 callbacks: namespaces arrive apart from the attributes, and each attribute as five pointers
// (local name, prefix, URI, value, end of value), so no value needs measuring.
void libxml2SaxStart(void* data, const xmlChar*, const xmlChar*, const xmlChar*, int, const xmlChar**,
                     int attributeCount, int, const xmlChar** attributes) {
  Tally& tally = *static_cast<Tally*>(data);
  ++tally.elements;
  for (int i = 0; i < attributeCount; ++i)
    tally.attributeBytes += static_cast<size_t>(attributes[5 * i + 4] - attributes[5 * i + 3]);
}
void libxml2SaxEnd(void*, const xmlChar*, const xmlChar*, const xmlChar*) {}
void libxml2SaxText(void* data, const xmlChar*, int length) {
  static_cast<Tally*>(data)->textBytes += static_cast<size_t>(length);
}

bool parseLibxml2Sax(const std::string& document, Tally& tally, std::string& failure) {
  xmlSAXHandler handler;
  std::memset(&handler, 0, sizeof handler);
  handler.initialized = XML_SAX2_MAGIC;
  handler.startElementNs = libxml2SaxStart;
  handler.endElementNs = libxml2SaxEnd;
  handler.characters = libxml2SaxText;
  handler.ignorableWhitespace = libxml2SaxText;
  xmlParserCtxtPtr context = xmlCreatePushParserCtxt(&handler, &tally, nullptr, 0, "bench.xml");
  if (!context) {
    failure = "no push parser";
    return false;
  }
  xmlCtxtUseOptions(context, XML_PARSE_HUGE | XML_PARSE_NONET);
  bool read = true;
  for (size_t at = 0; read && at < document.size(); at += theChunkSize) {
    const size_t length = std::min(theChunkSize, document.size() - at);
    const bool last = at + length == document.size();
    read = xmlParseChunk(context, document.data() + at, static_cast<int>(length), last ? 1 : 0) == 0;
  }
  read = read && context->wellFormed;
  if (!read) failure = "not well-formed";
  xmlFreeParserCtxt(context);
  return read;
}

bool parseLibxml2Reader(const std::string& document, Tally& tally, std::string& failure) {
  xmlTextReaderPtr reader = xmlReaderForMemory(document.data(), static_cast<int>(document.size()), "bench.xml",
                                               nullptr, XML_PARSE_HUGE | XML_PARSE_NONET);
  if (!reader) {
    failure = "no reader";
    return false;
  }
  int status;
  while ((status = xmlTextReaderRead(reader)) == 1) {
    const int type = xmlTextReaderNodeType(reader);
    if (type == XML_READER_TYPE_ELEMENT) {
      ++tally.elements;
      while (xmlTextReaderMoveToNextAttribute(reader) == 1) {
        const xmlChar* value = xmlTextReaderConstValue(reader);
        if (value) tally.attributeBytes += std::strlen(reinterpret_cast<const char*>(value));
      }
    } else if (type == XML_READER_TYPE_TEXT) {
      const xmlChar* value = xmlTextReaderConstValue(reader);
      if (value) tally.textBytes += std::strlen(reinterpret_cast<const char*>(value));
    }
  }
  xmlFreeTextReader(reader);
  if (status != 0) failure = "reader failed";
  return status == 0;
}
#endif

#ifdef ZR_BENCH_HAVE_EXPAT
void XMLCALL expatStart(void* data, const XML_Char*, const XML_Char** attributes) {
  Tally& tally = *static_cast<Tally*>(data);
  ++tally.elements;
  for (int i = 0; attributes[i]; i += 2) tally.attributeBytes += std::strlen(attributes[i + 1]);
}
void XMLCALL expatEnd(void*, const XML_Char*) {}
void XMLCALL expatText(void* data, const XML_Char*, int length) {
  static_cast<Tally*>(data)->textBytes += static_cast<size_t>(length);
}

// With namespace processing, as ours and libxml2's SAX2 parser do it: expat then binds every prefix to
// its URI and takes the declarations out of the attributes. Without it expat would hand out names as
// written and skip work the others must do, which would flatter it on the namespaced documents.
bool parseExpat(const std::string& document, Tally& tally, std::string& failure) {
  XML_Parser parser = XML_ParserCreateNS(nullptr, ' ');
  if (!parser) {
    failure = "no parser";
    return false;
  }
  XML_SetUserData(parser, &tally);
  XML_SetElementHandler(parser, expatStart, expatEnd);
  XML_SetCharacterDataHandler(parser, expatText);
  bool read = true;
  for (size_t at = 0; read && at < document.size(); at += theChunkSize) {
    const size_t length = std::min(theChunkSize, document.size() - at);
    const bool last = at + length == document.size();
    read = XML_Parse(parser, document.data() + at, static_cast<int>(length), last) != XML_STATUS_ERROR;
  }
  if (!read) failure = XML_ErrorString(XML_GetErrorCode(parser));
  XML_ParserFree(parser);
  return read;
}
#endif

#ifdef ZR_BENCH_HAVE_PUGIXML
bool parsePugixml(const std::string& document, Tally& tally, std::string& failure) {
  pugi::xml_document tree;
  const pugi::xml_parse_result result = tree.load_buffer(document.data(), document.size());
  if (!result) {
    failure = result.description();
    return false;
  }
  // Depth first without recursion: down to the first child, else on to the next sibling of the nearest
  // node that has one; the document node has none, which ends the walk.
  for (pugi::xml_node node = tree.first_child(); node;) {
    const pugi::xml_node_type type = node.type();
    if (type == pugi::node_element) {
      ++tally.elements;
      for (pugi::xml_attribute attribute = node.first_attribute(); attribute; attribute = attribute.next_attribute())
        tally.attributeBytes += std::strlen(attribute.value());
      if (node.first_child()) {
        node = node.first_child();
        continue;
      }
    } else if (type == pugi::node_pcdata || type == pugi::node_cdata) {
      tally.textBytes += std::strlen(node.value());
    }
    while (node && !node.next_sibling()) node = node.parent();
    if (node) node = node.next_sibling();
  }
  return true;
}
#endif

struct Parser {
  const char* name;
  ParseFunction* parse;
};

// Ours first: the ratios are taken to it.
const Parser theParsers[] = {
    {"ours", parseOurs},
    {"strict", parseOursStrict},
    {"expanding", parseOursExpanding},
#ifdef ZR_BENCH_HAVE_LIBXML2
    {"libxml2Sax", parseLibxml2Sax},
#endif
#ifdef ZR_BENCH_HAVE_EXPAT
    {"expat", parseExpat},
#endif
#ifdef ZR_BENCH_HAVE_LIBXML2
    {"libxml2Reader", parseLibxml2Reader},
#endif
#ifdef ZR_BENCH_HAVE_PUGIXML
    {"pugixml", parsePugixml},
#endif
};
const size_t theParserCount = sizeof theParsers / sizeof theParsers[0];

double threadSeconds() {
  timespec now;
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
  return static_cast<double>(now.tv_sec) + 1e-9 * static_cast<double>(now.tv_nsec);
}

double median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  const size_t middle = values.size() / 2;
  return values.size() % 2 ? values[middle] : (values[middle - 1] + values[middle]) / 2;
}

// Every parser reads the document once; empty when they all got through it and agree on the number of
// elements. Only elements are compared: the parsers differ in what they call text and attributes.
// Ours and pugixml drop white space between tags, libxml2's reader reports it as a kind of node not
// tallied here, expat and libxml2's SAX parser hand it out (expat in pieces at every line end); ours
// also trims the white space at both ends of a content. libxml2's reader and pugixml count namespace
// declarations as attributes, the others take them apart.
std::string verify(const std::string& document, Tally (&tallies)[theParserCount]) {
  // A fault in one of our modes would mean a broken document or a broken tokenizer, and either way
  // that its times measure something else.
  std::string fault;
  Zr::Print::instance().setSink([&fault](int, const std::string& message) {
    if (fault.empty()) fault = message;
  });
  std::string failure;
  for (size_t i = 0; i < theParserCount && failure.empty(); ++i) {
    std::string reason;
    if (!theParsers[i].parse(document, tallies[i], reason)) failure = std::string(theParsers[i].name) + ": " + reason;
    if (failure.empty() && !fault.empty()) failure = std::string(theParsers[i].name) + " reported: " + fault;
    if (failure.empty() && tallies[i].elements != tallies[0].elements)
      failure = std::string(theParsers[i].name) + " saw " + std::to_string(tallies[i].elements) +
                " elements, ours " + std::to_string(tallies[0].elements);
  }
  Zr::Print::instance().resetSink();
  return failure;
}

int roundsFor(int sizeIndex) {
  const char* text = std::getenv("ZR_BENCH_ROUNDS");
  const int rounds = text ? std::atoi(text) : 0;
  return rounds > 0 ? rounds : theDefaultRounds[sizeIndex];
}

void runRounds(benchmark::State& state, int kind, int sizeIndex) {
  const std::string& document = documentOf(kind, sizeIndex);
  Tally expected[theParserCount];
  const std::string failure = verify(document, expected);
  if (!failure.empty()) {
    state.SkipWithError(failure.c_str());
    return;
  }
  std::vector<double> seconds[theParserCount];
  for (auto _ : state) {
    double roundSeconds = 0;
    for (size_t i = 0; i < theParserCount; ++i) {
      Tally tally;
      std::string reason;
      const double start = threadSeconds();
      const bool read = theParsers[i].parse(document, tally, reason);
      const double elapsed = threadSeconds() - start;
      benchmark::DoNotOptimize(tally);
      if (!read || tally.elements != expected[i].elements) {
        state.SkipWithError((std::string(theParsers[i].name) + " read differently from its first run").c_str());
        break;
      }
      seconds[i].push_back(elapsed);
      roundSeconds += elapsed;
    }
    state.SetIterationTime(roundSeconds);
  }
  if (state.error_occurred()) return;
  state.counters["oursMB/s"] =
      static_cast<double>(document.size()) / static_cast<double>(1u << 20) / median(seconds[0]);
  for (size_t i = 1; i < theParserCount; ++i) {
    std::vector<double> ratios;
    for (size_t r = 0; r < seconds[i].size(); ++r) ratios.push_back(seconds[i][r] / seconds[0][r]);
    state.counters[std::string(theParsers[i].name) + "/ours"] = median(ratios);
  }
  state.counters["elements"] = static_cast<double>(expected[0].elements);
}

void runOursAlone(benchmark::State& state, int kind, int sizeIndex, ParseFunction* parse) {
  const std::string& document = documentOf(kind, sizeIndex);
  Tally tally;
  for (auto _ : state) {
    tally = Tally();
    std::string failure;
    if (!parse(document, tally, failure)) {
      state.SkipWithError(failure.c_str());
      break;
    }
    benchmark::DoNotOptimize(tally);
  }
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * static_cast<int64_t>(document.size()));
  state.counters["elements"] = static_cast<double>(tally.elements);
}

void registerBenchmarks() {
  for (int sizeIndex = 0; sizeIndex < SizeCount; ++sizeIndex) {
    for (int kind = 0; kind < KindCount; ++kind) {
      const std::string suffix = std::string("/") + theKindNames[kind] + "/" + std::to_string(theSizesMB[sizeIndex]) + "MB";
      benchmark::RegisterBenchmark(("Round" + suffix).c_str(),
                                   [kind, sizeIndex](benchmark::State& state) { runRounds(state, kind, sizeIndex); })
          ->Iterations(roundsFor(sizeIndex))
          ->UseManualTime()
          ->Unit(benchmark::kMillisecond);
    }
  }
  const Parser alone[] = {{"Ours", parseOurs}, {"OursStrict", parseOursStrict}, {"OursExpanding", parseOursExpanding}};
  for (const Parser& parser : alone) {
    for (int sizeIndex = 0; sizeIndex < SizeCount; ++sizeIndex) {
      for (int kind = 0; kind < KindCount; ++kind) {
        const std::string name = std::string(parser.name) + "/" + theKindNames[kind] + "/" +
                                 std::to_string(theSizesMB[sizeIndex]) + "MB";
        ParseFunction* parse = parser.parse;
        benchmark::RegisterBenchmark(name.c_str(), [kind, sizeIndex, parse](benchmark::State& state) {
          runOursAlone(state, kind, sizeIndex, parse);
        })->Unit(benchmark::kMillisecond);
      }
    }
  }
}

}  // namespace

int main(int argc, char** argv) {
#ifdef ZR_BENCH_HAVE_LIBXML2
  xmlInitParser();
#endif
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  registerBenchmarks();
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
#ifdef ZR_BENCH_HAVE_LIBXML2
  xmlCleanupParser();
#endif
  return 0;
}
