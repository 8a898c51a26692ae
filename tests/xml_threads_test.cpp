// Test label: threads
// Separate readers, writers and objects on separate threads: each reader reads its own document into its
// own objects and records only its own faults, while the classes register for the first time on
// whichever thread gets there first. Run under ThreadSanitizer in CI (label "threads").
#include <ZrXmlBasicType.h>
#include <ZrXmlCompoundType.h>
#include <ZrXmlMapType.h>
#include <ZrXmlReader.h>
#include <ZrXmlVectorType.h>
#include <ZrXmlWriter.h>
#include <gtest/gtest.h>

#include <atomic>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

namespace {

// Classes of their own per test, so that each test sees their first registration race.
template <int Kind>
class Station : public ZrXmlCompoundType {
 public:
  ZrXmlObject* clone() const override { return new Station(*this); }
  ZrXmlObject* newObject() const override { return new Station(); }
  ZrBoolean equality(const ZrXmlObject*) const override { return false; }
  ZrToken token() const override { return ZrToken("urn:line", "station"); }
  void registerComponents() override {
    registerAttributeComponent(ZrToken("id"), &id);
    registerComponent(ZrToken("urn:line", "name"), &name);
    registerComponent(ZrToken("urn:line", "speed"), &speed);
    registerComponent(ZrToken("urn:line", "zones"), &zones);
    registerComponent(ZrToken("urn:line", "limits"), &limits);
  }

  ZrXmlBasicType<unsigned int> id;
  ZrXmlBasicType<std::string> name;
  ZrXmlBasicType<double> speed;
  ZrXmlVectorType<ZrXmlBasicType<double>> zones;
  ZrXmlMapType<ZrXmlBasicType<std::string>, ZrXmlBasicType<int>> limits;
};

const char* const theCleanDocument =
    "<station id=\"4\"><limits><element><key>max</key><value>9</value></element></limits><name>press</name>"
    "<speed>0.5</speed><zones size=\"3\"><group>1 2 3</group></zones></station>";
// Three faults: an unknown element, an unknown attribute and a size that disagrees with the count.
const char* const theFaultyDocument =
    "<station id=\"4\" colour=\"red\"><name>press</name><speedd>1</speedd>"
    "<zones size=\"5\"><group>1 2 3</group></zones></station>";
const ZrU32 theFaultsOfTheFaultyDocument = 3;

// Messages of all threads are dropped (counted only), so that the test prints nothing.
struct QuietSink {
  QuietSink() {
    Zr::Print::instance().setSink([this](int, const std::string&) { ++messages; });
  }
  ~QuietSink() { Zr::Print::instance().resetSink(); }
  std::atomic<unsigned> messages{0};
};

struct ReadOutcome {
  ZrU32 faults = 0;
  std::size_t records = 0;
  double speed = 0.0;
  std::size_t zones = 0;
};

template <int Kind>
ReadOutcome readOnce(const char* document) {
  std::istringstream in(document);
  ZrXmlReader reader("line.xml", in);
  Station<Kind> station;
  reader.readXml();
  station.read(reader);
  while (reader.readXml() != 0) {
  }
  reader.finish();
  return {reader.faultCount(), reader.faults().size(), station.speed.value(), station.zones.size()};
}

// One thread reads the faulty document while two read the clean one, again and again: every reader
// counts exactly its own document's faults, and the clean readers none.
TEST(ZrXmlThreads, ConcurrentReadersKeepTheirOwnFaults) {
  QuietSink quiet;
  const int theRounds = 150;
  std::atomic<int> wrongCounts{0}, wrongValues{0};
  std::vector<std::thread> threads;
  for (int t = 0; t < 3; ++t) {
    threads.emplace_back([t, &wrongCounts, &wrongValues] {
      const bool faulty = t == 0;
      for (int round = 0; round < theRounds; ++round) {
        const ReadOutcome outcome = readOnce<1>(faulty ? theFaultyDocument : theCleanDocument);
        const ZrU32 expected = faulty ? theFaultsOfTheFaultyDocument : 0;
        if (outcome.faults != expected || outcome.records != expected) ++wrongCounts;
        if (outcome.zones != 3 || (!faulty && outcome.speed != 0.5)) ++wrongValues;
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(wrongCounts.load(), 0);
  EXPECT_EQ(wrongValues.load(), 0);
}

std::string writeOnce(const ZrXmlWriteOptions& options) {
  std::istringstream in(theCleanDocument);
  ZrXmlReader reader("line.xml", in);
  Station<2> station;
  reader.readXml();
  station.read(reader);
  std::ostringstream out;
  ZrXmlWriter writer("line.xml", out);
  writer.setOptions(options);
  writer.header(station.token(), "urn:line");
  station.write(writer);
  writer.writeEndTag();
  return out.str();
}

// Writers with different settings on separate threads each write exactly what one writer alone writes.
TEST(ZrXmlThreads, ConcurrentWritersWriteWhatOneWriterWrites) {
  QuietSink quiet;
  const std::vector<ZrXmlWriteOptions> profiles = {ZrXmlWriteOptions::toolkit(), ZrXmlWriteOptions::standard()};
  std::vector<std::string> alone;
  for (const ZrXmlWriteOptions& options : profiles) alone.push_back(writeOnce(options));
  std::atomic<int> different{0};
  std::vector<std::thread> threads;
  for (int t = 0; t < 4; ++t) {
    threads.emplace_back([t, &profiles, &alone, &different] {
      const std::size_t profile = static_cast<std::size_t>(t) % profiles.size();
      for (int round = 0; round < 100; ++round)
        if (writeOnce(profiles[profile]) != alone[profile]) ++different;
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(different.load(), 0);
  EXPECT_EQ(quiet.messages.load(), 0u);
}

// A reader made on one thread, reading on another and destroyed on the first: the reading thread's later
// messages reach no reader that is gone.
TEST(ZrXmlThreads, AReaderMayMoveBetweenThreads) {
  QuietSink quiet;
  std::istringstream in(theFaultyDocument);
  auto reader = std::make_unique<ZrXmlReader>("line.xml", in);
  std::thread worker([&reader] {
    Station<3> station;
    reader->readXml();
    station.read(*reader);
  });
  worker.join();
  EXPECT_EQ(reader->faultCount(), theFaultsOfTheFaultyDocument);
  reader.reset();
  std::thread later([] { Zr::Print::instance().write(Zr::PrintError, "a message after the reader went\n"); });
  later.join();
  EXPECT_EQ(quiet.messages.load(), theFaultsOfTheFaultyDocument + 1);
}

}  // namespace
