// Large arrays written and read through the object layer, side by side with other XML serialisers in
// one run: a vector of doubles, a vector of points (x, y, z), and a vector of small records of an
// application's own class (an id and two reals), at three sizes tenfold apart.
//
// Every library gets the same numbers (fixed seeds, each rounded to six significant digits so that the
// six digits this library writes by default carry them exactly), writes into an in-memory stream and
// reads from memory. Each reader must deliver the numbers into its own container: ours into the
// ZrXmlVectorType / ZrXmlVectorVector it reads, the others into a std::vector<double> or a
// std::vector<Point>. Before timing, every reader's result is compared with the numbers written, so a
// reader that skipped work would fail instead of looking fast.
//
// Layouts:
//   zrXml     <array size="N"><group>v v ...</group></array> and <element x=".." y=".." z=".."/> per point
//   pugixml   the same elements, built and walked as a DOM; the number list is formatted and parsed with
//             to_chars/from_chars, point attributes through pugixml's own set_value/as_double
//   cereal    XML archive of the std::vector: one element per number (or per point, with x, y, z children)
//   boost     xml_oarchive/xml_iarchive: count, item_version, then one item element per number or point
// Records (ours, cereal and boost only; pugixml has no object layer): ours is a ZrXmlVectorType of a
// compound class, <element id=".."><length>..</length><weight>..</weight></element> per record; the
// peers serialise a std::vector of a plain struct with the same three members.
// pugixml and cereal are asked for six significant digits, as we write; Boost's archive picks its own
// precision, so its documents are longer. The doc_bytes counter shows each document's size.
//
// Counters: bytes_per_second (document bytes), items_per_second (numbers or points), doc_bytes.
// bench/ratios.py turns a JSON run into the table of our time over each peer's.
#include <ZrXmlCompoundType.h>
#include <ZrXmlFileReader.h>
#include <ZrXmlReader.h>
#include <ZrXmlVectorType.h>
#include <ZrXmlVectorVector.h>
#include <ZrXmlWriter.h>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#ifdef ZR_BENCH_HAVE_PUGIXML
#include <pugixml.hpp>
#endif
#ifdef ZR_BENCH_HAVE_CEREAL
#include <cereal/archives/xml.hpp>
#include <cereal/types/vector.hpp>
#endif
#ifdef ZR_BENCH_HAVE_BOOST_SERIALIZATION
#include <boost/archive/xml_iarchive.hpp>
#include <boost/archive/xml_oarchive.hpp>
#include <boost/serialization/nvp.hpp>
#include <boost/serialization/vector.hpp>
#endif

struct Point {
  double x;
  double y;
  double z;
};

// One record of the peers' vectors of records.
struct Record {
  int id;
  double weight;
  double length;
};

// The same record as an application's own persistent class.
class Parcel : public ZrXmlCompoundType {
 public:
  Parcel() = default;
  Parcel(int id, double weight, double length) : m_theId(id), m_theWeight(weight), m_theLength(length) {}
  ZrXmlObject* clone() const override { return new Parcel(*this); }
  ZrXmlObject* newObject() const override { return new Parcel(); }
  ZrBoolean equality(const ZrXmlObject* other) const override {
    const Parcel* parcel = dynamic_cast<const Parcel*>(other);
    return parcel && m_theId == parcel->m_theId && m_theWeight == parcel->m_theWeight &&
           m_theLength == parcel->m_theLength;
  }
  ZrToken token() const override { return ZrToken("http://www.zrtoolkit.org/namespace/cr", "parcel"); }
  Record record() const { return {m_theId.value(), m_theWeight.value(), m_theLength.value()}; }

 protected:
  void registerComponents() override {
    static const ZrToken id("id"), weight("http://www.zrtoolkit.org/namespace/cr", "weight"),
        length("http://www.zrtoolkit.org/namespace/cr", "length");
    registerAttributeComponent(id, &m_theId);
    registerComponent(weight, &m_theWeight);
    registerComponent(length, &m_theLength);
  }

 private:
  ZrXmlBasicType<int> m_theId;
  ZrXmlBasicType<double> m_theWeight;
  ZrXmlBasicType<double> m_theLength;
};

#ifdef ZR_BENCH_HAVE_BOOST_SERIALIZATION
BOOST_CLASS_IMPLEMENTATION(Record, boost::serialization::object_serializable)
BOOST_CLASS_TRACKING(Record, boost::serialization::track_never)
namespace boost {
namespace serialization {
template <class Archive>
void serialize(Archive& archive, Record& record, const unsigned int /*version*/) {
  archive& make_nvp("id", record.id) & make_nvp("weight", record.weight) & make_nvp("length", record.length);
}
}  // namespace serialization
}  // namespace boost
#endif

#ifdef ZR_BENCH_HAVE_CEREAL
template <class Archive>
void serialize(Archive& archive, Record& record) {
  archive(cereal::make_nvp("id", record.id), cereal::make_nvp("weight", record.weight),
          cereal::make_nvp("length", record.length));
}
#endif

#ifdef ZR_BENCH_HAVE_BOOST_SERIALIZATION
// Plain data: no class information, no object tracking, as one would set for bulk arrays.
BOOST_CLASS_IMPLEMENTATION(Point, boost::serialization::object_serializable)
BOOST_CLASS_TRACKING(Point, boost::serialization::track_never)
namespace boost {
namespace serialization {
template <class Archive>
void serialize(Archive& archive, Point& point, const unsigned int /*version*/) {
  archive& make_nvp("x", point.x) & make_nvp("y", point.y) & make_nvp("z", point.z);
}
}  // namespace serialization
}  // namespace boost
#endif

#ifdef ZR_BENCH_HAVE_CEREAL
// Found by cereal through argument-dependent lookup; the Boost function above lives where cereal does
// not look, so each library sees exactly one.
template <class Archive>
void serialize(Archive& archive, Point& point) {
  archive(cereal::make_nvp("x", point.x), cereal::make_nvp("y", point.y), cereal::make_nvp("z", point.z));
}
#endif

namespace {

const int theSignificantDigits = 6;

// count numbers between -1000 and 1000, each rounded to six significant digits.
std::vector<double> sampleValues(size_t count, std::uint32_t seed) {
  std::mt19937 random(seed);
  std::uniform_real_distribution<double> spread(-1000.0, 1000.0);
  std::vector<double> values(count);
  char text[32];
  for (double& value : values) {
    const std::to_chars_result end =
        std::to_chars(text, text + sizeof text, spread(random), std::chars_format::general, theSignificantDigits);
    std::from_chars(text, end.ptr, value);
  }
  return values;
}

// The two shapes: how many numbers make one item, and which of a library's containers holds them.
struct DoublesShape {
  static constexpr size_t valuesPerItem = 1;
  static constexpr std::uint32_t seed = 20240601;
  template <class Library>
  using Object = typename Library::Doubles;
};

struct PointsShape {
  static constexpr size_t valuesPerItem = 3;
  static constexpr std::uint32_t seed = 20240602;
  template <class Library>
  using Object = typename Library::Points;
};

struct RecordsShape {
  static constexpr size_t valuesPerItem = 2;
  static constexpr std::uint32_t seed = 20240603;
  template <class Library>
  using Object = typename Library::Records;
};

// Filling and flattening the standard containers the peers read into and write from.
void fill(const std::vector<double>& values, std::vector<double>& doubles) { doubles = values; }
void fill(const std::vector<double>& values, std::vector<Point>& points) {
  points.clear();
  for (size_t i = 0; i + 2 < values.size(); i += 3) points.push_back({values[i], values[i + 1], values[i + 2]});
}
void fill(const std::vector<double>& values, std::vector<Record>& records) {
  records.clear();
  for (size_t i = 0; i + 1 < values.size(); i += 2) records.push_back({static_cast<int>(i / 2), values[i], values[i + 1]});
}
std::vector<double> flatten(const std::vector<Record>& records) {
  std::vector<double> values;
  for (const Record& record : records) values.insert(values.end(), {double(record.id), record.weight, record.length});
  return values;
}
std::vector<double> flatten(const std::vector<double>& doubles) {
  std::vector<double> values;
  values.assign(doubles.begin(), doubles.end());
  return values;
}
std::vector<double> flatten(const std::vector<Point>& points) {
  std::vector<double> values;
  for (const Point& point : points) values.insert(values.end(), {point.x, point.y, point.z});
  return values;
}

// ---- zrXml: the library under test -------------------------------------------------------------------
struct Ours {
  using Doubles = ZrXmlVectorType<ZrXmlBasicType<double>>;
  using Points = ZrXmlVectorVector;
  using Records = ZrXmlVectorType<Parcel>;

  static void fill(const std::vector<double>& values, Doubles& doubles) {
    doubles.clear();
    doubles.reserve(static_cast<ZrU32>(values.size()));
    for (double value : values) doubles.pushBack(value);
  }
  static void fill(const std::vector<double>& values, Points& points) {
    points.clear();
    for (size_t i = 0; i + 2 < values.size(); i += 3)
      points.pushBack(ZrVector(values[i], values[i + 1], values[i + 2]));
  }
  static void fill(const std::vector<double>& values, Records& records) {
    records.clear();
    for (size_t i = 0; i + 1 < values.size(); i += 2)
      records.pushBack(Parcel(static_cast<int>(i / 2), values[i], values[i + 1]));
  }
  static std::vector<double> flatten(const Records& records) {
    std::vector<double> values;
    for (const Parcel& parcel : records.vectorContainer()) {
      const Record record = parcel.record();
      values.insert(values.end(), {double(record.id), record.weight, record.length});
    }
    return values;
  }
  static std::vector<double> flatten(const Doubles& doubles) {
    std::vector<double> values;
    for (const ZrXmlBasicType<double>& value : doubles.vectorContainer()) values.push_back(value.value());
    return values;
  }
  static std::vector<double> flatten(const Points& points) {
    std::vector<double> values;
    for (const ZrVector& point : points.vectorContainer())
      values.insert(values.end(), {point.x(), point.y(), point.z()});
    return values;
  }

  template <class Object>
  static std::string write(const Object& object) {
    static const ZrToken root("http://www.zrtoolkit.org/namespace/cr", "array");
    std::ostringstream out;
    ZrXmlWriter writer("array.xml", out);
    writer.header(root, root.namespaceText());
    object.write(writer);
    writer.writeEndTag();
    return out.str();
  }

  template <class Object>
  static void read(const std::string& text, Object& object) {
    std::istringstream in(text);
    ZrXmlReader reader("array.xml", in);
    reader.readXml();
    object.read(reader);
    reader.readXml();
  }
};

// Ours with a written form switched on through its class default: lossless reals (the shortest text that
// reads back to each double instead of six digits), or markup-safe text (every value searched for markup
// characters, read back with reference expansion).
void noReadingDefault(bool) {}

template <void (*setDefault)(bool), void (*setReadingDefault)(bool) = &noReadingDefault>
struct OursWithForm : Ours {
  template <class Object>
  static std::string write(const Object& object) {
    setDefault(true);
    std::string text = Ours::write(object);
    setDefault(false);
    return text;
  }
  template <class Object>
  static void read(const std::string& text, Object& object) {
    setReadingDefault(true);
    Ours::read(text, object);
    setReadingDefault(false);
  }
};
using OursLossless = OursWithForm<&ZrXmlWriter::setDefaultLosslessReals>;
using OursMarkupSafe = OursWithForm<&ZrXmlWriter::setDefaultEscapeMarkup, &ZrXmlFileReader::setDefaultExpandReferences>;

// The peers keep their numbers in standard containers.
struct StandardContainers {
  using Doubles = std::vector<double>;
  using Points = std::vector<Point>;
  using Records = std::vector<Record>;
  template <class Object>
  static void fill(const std::vector<double>& values, Object& object) {
    ::fill(values, object);
  }
  template <class Object>
  static std::vector<double> flatten(const Object& object) {
    return ::flatten(object);
  }
};

#ifdef ZR_BENCH_HAVE_PUGIXML
// ---- pugixml: the same element layout as ours, through its DOM --------------------------------------
struct Pugixml : StandardContainers {
  static std::string save(const pugi::xml_document& document) {
    std::ostringstream out;
    document.save(out, " ");
    return out.str();
  }

  static pugi::xml_node arrayNode(pugi::xml_document& document, size_t size) {
    pugi::xml_node array = document.append_child("array");
    array.append_attribute("xmlns").set_value("http://www.zrtoolkit.org/namespace/cr");
    array.append_attribute("size").set_value(static_cast<unsigned long long>(size));
    return array;
  }

  static std::string write(const Doubles& doubles) {
    pugi::xml_document document;
    pugi::xml_node array = arrayNode(document, doubles.size());
    std::string text;
    text.reserve(doubles.size() * 12);
    char digits[32];
    for (double value : doubles) {
      const std::to_chars_result end =
          std::to_chars(digits, digits + sizeof digits, value, std::chars_format::general, theSignificantDigits);
      text.append(digits, end.ptr).push_back(' ');
    }
    array.append_child("group").append_child(pugi::node_pcdata).set_value(text.c_str());
    return save(document);
  }

  static std::string write(const Points& points) {
    pugi::xml_document document;
    pugi::xml_node array = arrayNode(document, points.size());
    for (const Point& point : points) {
      pugi::xml_node element = array.append_child("element");
      element.append_attribute("x").set_value(point.x, theSignificantDigits);
      element.append_attribute("y").set_value(point.y, theSignificantDigits);
      element.append_attribute("z").set_value(point.z, theSignificantDigits);
    }
    return save(document);
  }

  static void read(const std::string& text, Doubles& doubles) {
    pugi::xml_document document;
    document.load_buffer(text.data(), text.size());
    const pugi::xml_node array = document.child("array");
    doubles.clear();
    doubles.reserve(std::min<size_t>(array.attribute("size").as_ullong(), size_t(1) << 21));
    const char* word = array.child("group").child_value();
    const char* end = word + std::char_traits<char>::length(word);
    for (;;) {
      while (word != end && (*word == ' ' || *word == '\n' || *word == '\t' || *word == '\r')) ++word;
      if (word == end) break;
      double value = 0.0;
      const std::from_chars_result next = std::from_chars(word, end, value);
      if (next.ec != std::errc()) break;
      doubles.push_back(value);
      word = next.ptr;
    }
  }

  static void read(const std::string& text, Points& points) {
    pugi::xml_document document;
    document.load_buffer(text.data(), text.size());
    const pugi::xml_node array = document.child("array");
    points.clear();
    points.reserve(std::min<size_t>(array.attribute("size").as_ullong(), size_t(1) << 20));
    for (const pugi::xml_node element : array.children("element"))
      points.push_back({element.attribute("x").as_double(), element.attribute("y").as_double(),
                        element.attribute("z").as_double()});
  }
};
#endif

#ifdef ZR_BENCH_HAVE_CEREAL
// ---- cereal: its XML archive of the standard containers ---------------------------------------------
struct Cereal : StandardContainers {
  template <class Object>
  static std::string write(const Object& object) {
    std::ostringstream out;
    {
      cereal::XMLOutputArchive archive(out, cereal::XMLOutputArchive::Options(theSignificantDigits));
      archive(cereal::make_nvp("array", object));
    }  // the archive writes its document when it ends
    return out.str();
  }

  template <class Object>
  static void read(const std::string& text, Object& object) {
    std::istringstream in(text);
    cereal::XMLInputArchive archive(in);
    archive(cereal::make_nvp("array", object));
  }
};
#endif

#ifdef ZR_BENCH_HAVE_BOOST_SERIALIZATION
// ---- Boost.Serialization: xml archives of the standard containers -----------------------------------
struct BoostSerialization : StandardContainers {
  template <class Object>
  static std::string write(const Object& object) {
    std::ostringstream out;
    {
      boost::archive::xml_oarchive archive(out);
      archive << boost::serialization::make_nvp("array", object);
    }  // the archive closes its root element when it ends
    return out.str();
  }

  template <class Object>
  static void read(const std::string& text, Object& object) {
    std::istringstream in(text);
    boost::archive::xml_iarchive archive(in);
    archive >> boost::serialization::make_nvp("array", object);
  }
};
#endif

// ---- the measurements, the same for every library ---------------------------------------------------
void setCounters(benchmark::State& state, size_t documentBytes, size_t items) {
  state.SetBytesProcessed(static_cast<int64_t>(documentBytes * state.iterations()));
  state.SetItemsProcessed(static_cast<int64_t>(items * state.iterations()));
  state.counters["doc_bytes"] = static_cast<double>(documentBytes);
  state.SetComplexityN(state.range(0));
}

template <class Library, class Shape>
typename Shape::template Object<Library> sampleObject(size_t items) {
  typename Shape::template Object<Library> object;
  Library::fill(sampleValues(items * Shape::valuesPerItem, Shape::seed), object);
  return object;
}

template <class Library, class Shape>
void write(benchmark::State& state) {
  const size_t items = static_cast<size_t>(state.range(0));
  const auto object = sampleObject<Library, Shape>(items);
  size_t bytes = 0;
  for (auto _ : state) {
    const std::string text = Library::write(object);
    bytes = text.size();
    benchmark::DoNotOptimize(text.data());
  }
  setCounters(state, bytes, items);
}

template <class Library, class Shape>
void read(benchmark::State& state) {
  const size_t items = static_cast<size_t>(state.range(0));
  const auto written = sampleObject<Library, Shape>(items);
  const std::string text = Library::write(written);
  {
    typename Shape::template Object<Library> object;
    Library::read(text, object);
    const std::vector<double> numbersRead = Library::flatten(object);
    const std::vector<double> numbersWritten = Library::flatten(written);
    if (numbersRead != numbersWritten) {
      state.SkipWithError("read back different numbers");
      return;
    }
  }
  for (auto _ : state) {
    typename Shape::template Object<Library> object;
    Library::read(text, object);
    benchmark::DoNotOptimize(object.size());
    if (object.size() != written.size()) state.SkipWithError("read back a different size");
  }
  setCounters(state, text.size(), items);
}

template <class Library>
void registerLibrary(const std::string& name) {
  const auto shape = [](benchmark::internal::Benchmark* benchmark, int64_t smallest, int64_t largest) {
    benchmark->RangeMultiplier(10)->Range(smallest, largest)->Unit(benchmark::kMillisecond)->Complexity(benchmark::oN);
  };
  shape(benchmark::RegisterBenchmark(("WriteDoubles/" + name).c_str(), write<Library, DoublesShape>), 10000, 1000000);
  shape(benchmark::RegisterBenchmark(("ReadDoubles/" + name).c_str(), read<Library, DoublesShape>), 10000, 1000000);
  shape(benchmark::RegisterBenchmark(("WritePoints/" + name).c_str(), write<Library, PointsShape>), 1000, 100000);
  shape(benchmark::RegisterBenchmark(("ReadPoints/" + name).c_str(), read<Library, PointsShape>), 1000, 100000);
}

// Vectors of records, for the libraries with an object layer.
template <class Library>
void registerRecords(const std::string& name) {
  for (const char* kind : {"WriteRecords/", "ReadRecords/"}) {
    auto* benchmark = benchmark::RegisterBenchmark(
        (kind + name).c_str(), kind[0] == 'W' ? write<Library, RecordsShape> : read<Library, RecordsShape>);
    benchmark->RangeMultiplier(10)->Range(1000, 100000)->Unit(benchmark::kMillisecond)->Complexity(benchmark::oN);
  }
}

}  // namespace

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  registerLibrary<Ours>("zrXml");
  registerRecords<Ours>("zrXml");
  registerLibrary<OursLossless>("zrXmlLossless");
  registerLibrary<OursMarkupSafe>("zrXmlMarkupSafe");
#ifdef ZR_BENCH_HAVE_PUGIXML
  registerLibrary<Pugixml>("pugixml");
#endif
#ifdef ZR_BENCH_HAVE_CEREAL
  registerLibrary<Cereal>("cereal");
  registerRecords<Cereal>("cereal");
#endif
#ifdef ZR_BENCH_HAVE_BOOST_SERIALIZATION
  registerLibrary<BoostSerialization>("boost");
  registerRecords<BoostSerialization>("boost");
#endif
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}
