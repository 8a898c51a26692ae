// A model of many small objects of an application's own class, written and read through the object
// layer beside cereal's XML archive and Boost.Serialization's xml archives, at three sizes tenfold apart
// (10,000 to 1,000,000 objects).
//
// Each object is a sensor: two attributes (an id and a label), two vectors (three offsets, two channel
// numbers), a real (the gain) and an integer (the sample count). Ours is a ZrXmlVectorType of a
// ZrXmlCompoundType subclass:
//   <element id="7" label="s7"><channels size="2"><group>3 4</group></channels><gain>1.5</gain>
//     <offsets size="3"><group>0.1 0.2 0.3</group></offsets><samples>12</samples></element>
// zrXmlHelper is the same class written on ZrXmlCompound, which gives clone, newObject, equality and
// token: its ratio to zrXml is the helper's cost per object. The peers serialise a std::vector of a
// plain struct with the same members. Every library writes into an in-memory stream and reads from one;
// before timing, what each reader delivers is compared with the model written, so a reader that skipped
// work fails instead of looking fast.
//
// The heap: every library runs on a heap that keeps the pages it was given. Left to its defaults, glibc
// hands memory freed at the top of the heap back to the system and maps large blocks afresh, so how many
// of a library's pages come back zero-filled from the kernel depended on which benchmark ran before it,
// and the read ratios moved by a tenth either way from run to run. Blocks past 32 MiB (the largest
// threshold glibc takes) are still mapped afresh, for every library alike. ZR_BENCH_SYSTEM_HEAP=1 keeps
// glibc's defaults. ZR_BENCH_CHECK_VALUES=1 reads with checked values.
//
// Memory: the Read benchmarks also report heap_bytes, the heap that reading the model leaves in use
// (the model itself, as the reader builds it), built_bytes, the heap the same model takes when the
// program builds it in memory, and heap_ratio, the first over the second.
//
//   build/bench/bench_objects --benchmark_format=json > objects.json && bench/ratios.py objects.json --all
#include <ZrXmlBasicType.h>
#include <ZrXmlCompound.h>
#include <ZrXmlCompoundType.h>
#include <ZrXmlReader.h>
#include <ZrXmlVectorType.h>
#include <ZrXmlWriter.h>

#include <benchmark/benchmark.h>

#include <malloc.h>

#include <climits>
#include <cstdlib>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#ifdef ZR_BENCH_HAVE_CEREAL
#include <cereal/archives/xml.hpp>
#include <cereal/types/string.hpp>
#include <cereal/types/vector.hpp>
#endif
#ifdef ZR_BENCH_HAVE_BOOST_SERIALIZATION
#include <boost/archive/xml_iarchive.hpp>
#include <boost/archive/xml_oarchive.hpp>
#include <boost/serialization/nvp.hpp>
#include <boost/serialization/string.hpp>
#include <boost/serialization/vector.hpp>
#endif

// The peers' sensor.
struct SensorRecord {
  int id = 0;
  std::string label;
  std::vector<double> offsets;
  std::vector<int> channels;
  double gain = 0.0;
  int samples = 0;
  bool operator==(const SensorRecord& other) const {
    return id == other.id && label == other.label && offsets == other.offsets && channels == other.channels &&
           gain == other.gain && samples == other.samples;
  }
};

namespace {

// Reals with at most six significant digits, so that every library's default text carries them exactly.
double sixDigits(std::mt19937& random) {
  return std::round(std::uniform_real_distribution<double>(-1000.0, 1000.0)(random) * 100.0) / 100.0;
}

const std::vector<SensorRecord>& sampleRecords(size_t count) {
  static std::vector<SensorRecord> records;
  if (records.size() != count) {
    std::mt19937 random(20261124);
    records.assign(count, SensorRecord());
    for (size_t i = 0; i < count; ++i) {
      SensorRecord& record = records[i];
      record.id = static_cast<int>(i);
      record.label = "s" + std::to_string(i);
      record.offsets = {sixDigits(random), sixDigits(random), sixDigits(random)};
      record.channels = {static_cast<int>(random() % 64), static_cast<int>(random() % 64)};
      record.gain = sixDigits(random);
      record.samples = static_cast<int>(random() % 10000);
    }
  }
  return records;
}

// See "The heap" above.
void keepHeapPages() {
  const char* systemHeap = std::getenv("ZR_BENCH_SYSTEM_HEAP");
  if (systemHeap && *systemHeap == '1') return;
  mallopt(M_TRIM_THRESHOLD, INT_MAX);
  mallopt(M_MMAP_THRESHOLD, 32 << 20);
}

// The heap in use, small blocks and mapped ones alike.
size_t heapInUse() {
  const struct mallinfo2 info = mallinfo2();
  return info.uordblks + info.hblkhd;
}

}  // namespace

// The same sensor as an application's own persistent class: its members and registrations, shared by
// the class written by hand (Sensor) and the one written on the class helper (HelperSensor), so that the
// two differ only in how they complete the object interface.
template <class Base>
class SensorBody : public Base {
 public:
  SensorBody() = default;
  explicit SensorBody(const SensorRecord& record)
      : m_theId(record.id), m_theLabel(record.label), m_theGain(record.gain), m_theSamples(record.samples) {
    m_theOffsets.reserve(static_cast<ZrU32>(record.offsets.size()));
    for (double offset : record.offsets) m_theOffsets.pushBack(offset);
    m_theChannels.reserve(static_cast<ZrU32>(record.channels.size()));
    for (int channel : record.channels) m_theChannels.pushBack(channel);
  }

  SensorRecord record() const {
    SensorRecord record;
    record.id = m_theId.value();
    record.label = m_theLabel.value();
    for (const auto& offset : m_theOffsets.vectorContainer()) record.offsets.push_back(offset.value());
    for (const auto& channel : m_theChannels.vectorContainer()) record.channels.push_back(channel.value());
    record.gain = m_theGain.value();
    record.samples = m_theSamples.value();
    return record;
  }

 protected:
  void registerComponents() override {
    static const std::string cr = "http://www.zrtoolkit.org/namespace/cr";
    static const ZrToken id("id"), label("label"), offsets(cr, "offsets"), channels(cr, "channels"),
        gain(cr, "gain"), samples(cr, "samples");
    this->registerAttributeComponent(id, &m_theId);
    this->registerAttributeComponent(label, &m_theLabel);
    this->registerComponent(offsets, &m_theOffsets);
    this->registerComponent(channels, &m_theChannels);
    this->registerComponent(gain, &m_theGain);
    this->registerComponent(samples, &m_theSamples);
  }

  ZrXmlBasicType<int> m_theId;
  ZrXmlBasicType<std::string> m_theLabel;
  ZrXmlVectorType<ZrXmlBasicType<double>> m_theOffsets;
  ZrXmlVectorType<ZrXmlBasicType<int>> m_theChannels;
  ZrXmlBasicType<double> m_theGain;
  ZrXmlBasicType<int> m_theSamples;
};

// Written by hand: the four operations of the object interface.
class Sensor : public SensorBody<ZrXmlCompoundType> {
 public:
  using SensorBody::SensorBody;
  ZrXmlObject* clone() const override { return new Sensor(*this); }
  ZrXmlObject* newObject() const override { return new Sensor(); }
  ZrBoolean equality(const ZrXmlObject* other) const override {
    const Sensor* sensor = dynamic_cast<const Sensor*>(other);
    return sensor && m_theId == sensor->m_theId && m_theLabel == sensor->m_theLabel &&
           m_theOffsets == sensor->m_theOffsets && m_theChannels == sensor->m_theChannels &&
           m_theGain == sensor->m_theGain && m_theSamples == sensor->m_theSamples;
  }
  ZrToken token() const override { return ZrToken("http://www.zrtoolkit.org/namespace/cr", "sensor"); }
};

// Written on the class helper, which gives the four operations.
class HelperSensor : public SensorBody<ZrXmlCompound<HelperSensor>> {
 public:
  using SensorBody::SensorBody;
  static ZrToken classToken() { return ZrToken("http://www.zrtoolkit.org/namespace/cr", "sensor"); }
};

#ifdef ZR_BENCH_HAVE_CEREAL
template <class Archive>
void serialize(Archive& archive, SensorRecord& record) {
  archive(cereal::make_nvp("id", record.id), cereal::make_nvp("label", record.label),
          cereal::make_nvp("offsets", record.offsets), cereal::make_nvp("channels", record.channels),
          cereal::make_nvp("gain", record.gain), cereal::make_nvp("samples", record.samples));
}
#endif

#ifdef ZR_BENCH_HAVE_BOOST_SERIALIZATION
// Plain data: no class information, no object tracking, as one would set for bulk arrays.
BOOST_CLASS_IMPLEMENTATION(SensorRecord, boost::serialization::object_serializable)
BOOST_CLASS_TRACKING(SensorRecord, boost::serialization::track_never)
namespace boost {
namespace serialization {
template <class Archive>
void serialize(Archive& archive, SensorRecord& record, const unsigned int /*version*/) {
  archive& make_nvp("id", record.id) & make_nvp("label", record.label) & make_nvp("offsets", record.offsets) &
      make_nvp("channels", record.channels) & make_nvp("gain", record.gain) & make_nvp("samples", record.samples);
}
}  // namespace serialization
}  // namespace boost
#endif

namespace {

// ---- zrXml: the library under test, with the class written by hand and on the helper --------------
template <class SensorClass>
struct OursWith {
  using Model = ZrXmlVectorType<SensorClass>;

  static void build(const std::vector<SensorRecord>& records, Model& model) {
    model.clear();
    model.reserve(static_cast<ZrU32>(records.size()));
    for (const SensorRecord& record : records) model.pushBack(SensorClass(record));
  }
  static std::vector<SensorRecord> records(const Model& model) {
    std::vector<SensorRecord> records;
    for (const SensorClass& sensor : model.vectorContainer()) records.push_back(sensor.record());
    return records;
  }
  static size_t size(const Model& model) { return model.size(); }

  static std::string write(const Model& model) {
    static const ZrToken root("http://www.zrtoolkit.org/namespace/cr", "sensors");
    std::ostringstream out;
    ZrXmlWriter writer("sensors.xml", out);
    writer.header(root, root.namespaceText());
    model.write(writer);
    writer.writeEndTag();
    return out.str();
  }
  static void read(const std::string& text, Model& model) {
    std::istringstream in(text);
    ZrXmlReader reader("sensors.xml", in);
    reader.readXml();
    model.read(reader);
    reader.readXml();
  }
};
using Ours = OursWith<Sensor>;
using OursOnHelper = OursWith<HelperSensor>;

// The peers keep their sensors in a std::vector of the plain struct.
struct StandardContainer {
  using Model = std::vector<SensorRecord>;
  static void build(const std::vector<SensorRecord>& records, Model& model) { model = records; }
  static const std::vector<SensorRecord>& records(const Model& model) { return model; }
  static size_t size(const Model& model) { return model.size(); }
};

#ifdef ZR_BENCH_HAVE_CEREAL
struct Cereal : StandardContainer {
  static std::string write(const Model& model) {
    std::ostringstream out;
    {
      cereal::XMLOutputArchive archive(out, cereal::XMLOutputArchive::Options(6));
      archive(cereal::make_nvp("sensors", model));
    }  // the archive writes its document when it ends
    return out.str();
  }
  static void read(const std::string& text, Model& model) {
    std::istringstream in(text);
    cereal::XMLInputArchive archive(in);
    archive(cereal::make_nvp("sensors", model));
  }
};
#endif

#ifdef ZR_BENCH_HAVE_BOOST_SERIALIZATION
struct BoostSerialization : StandardContainer {
  static std::string write(const Model& model) {
    std::ostringstream out;
    {
      boost::archive::xml_oarchive archive(out);
      archive << boost::serialization::make_nvp("sensors", model);
    }  // the archive closes its root element when it ends
    return out.str();
  }
  static void read(const std::string& text, Model& model) {
    std::istringstream in(text);
    boost::archive::xml_iarchive archive(in);
    archive >> boost::serialization::make_nvp("sensors", model);
  }
};
#endif

// ---- the measurements, the same for every library ---------------------------------------------------
void setCounters(benchmark::State& state, size_t documentBytes) {
  state.SetBytesProcessed(static_cast<int64_t>(documentBytes * state.iterations()));
  state.SetItemsProcessed(static_cast<int64_t>(state.range(0) * state.iterations()));
  state.counters["doc_bytes"] = static_cast<double>(documentBytes);
  state.SetComplexityN(state.range(0));
}

template <class Library>
void write(benchmark::State& state) {
  typename Library::Model model;
  Library::build(sampleRecords(static_cast<size_t>(state.range(0))), model);
  size_t bytes = 0;
  for (auto _ : state) {
    const std::string text = Library::write(model);
    bytes = text.size();
    benchmark::DoNotOptimize(text.data());
  }
  setCounters(state, bytes);
}

// The heap that building (or reading) a model leaves in use, measured around a model that lives on.
template <class Library, class Make>
size_t heapOfModel(Make make) {
  const size_t before = heapInUse();
  auto* model = new typename Library::Model;
  make(*model);
  const size_t bytes = heapInUse() - before;
  delete model;
  return bytes;
}

template <class Library>
void read(benchmark::State& state) {
  const std::vector<SensorRecord>& records = sampleRecords(static_cast<size_t>(state.range(0)));
  std::string text;
  {
    typename Library::Model written;
    Library::build(records, written);
    text = Library::write(written);
    typename Library::Model model;
    Library::read(text, model);
    if (!(Library::records(model) == records)) {
      state.SkipWithError("read back a different model");
      return;
    }
  }
  const size_t built = heapOfModel<Library>([&](typename Library::Model& model) { Library::build(records, model); });
  const size_t read = heapOfModel<Library>([&](typename Library::Model& model) { Library::read(text, model); });
  for (auto _ : state) {
    typename Library::Model model;
    Library::read(text, model);
    benchmark::DoNotOptimize(Library::size(model));
  }
  setCounters(state, text.size());
  state.counters["heap_bytes"] = static_cast<double>(read);
  state.counters["built_bytes"] = static_cast<double>(built);
  state.counters["heap_ratio"] = built ? static_cast<double>(read) / static_cast<double>(built) : 0.0;
}

template <class Library>
void registerLibrary(const std::string& name) {
  for (const char* kind : {"WriteObjects/", "ReadObjects/"}) {
    auto* benchmark =
        benchmark::RegisterBenchmark((kind + name).c_str(), kind[0] == 'W' ? write<Library> : read<Library>);
    benchmark->RangeMultiplier(10)->Range(10000, 1000000)->Unit(benchmark::kMillisecond)->Complexity(benchmark::oN);
  }
}

}  // namespace

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  keepHeapPages();
  // ZR_BENCH_CHECK_VALUES=1 reads with checked values, to measure what checking costs.
  const char* checkValues = std::getenv("ZR_BENCH_CHECK_VALUES");
  if (checkValues && *checkValues == '1') ZrXmlReader::setDefaultCheckValues(true);
  registerLibrary<Ours>("zrXml");
  registerLibrary<OursOnHelper>("zrXmlHelper");
#ifdef ZR_BENCH_HAVE_CEREAL
  registerLibrary<Cereal>("cereal");
#endif
#ifdef ZR_BENCH_HAVE_BOOST_SERIALIZATION
  registerLibrary<BoostSerialization>("boost");
#endif
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}
