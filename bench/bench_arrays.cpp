// Large arrays written and read through the object layer: a vector of doubles (one "group" of
// content words) and a vector of vectors (one "element" with x, y, z attributes per point, read by the
// fast path). Three sizes tenfold apart, so the fitted complexity shows whether time grows linearly;
// throughput is reported in bytes of document per second.
#include <ZrXmlReader.h>
#include <ZrXmlVectorType.h>
#include <ZrXmlVectorVector.h>
#include <ZrXmlWriter.h>

#include <benchmark/benchmark.h>

#include <random>
#include <sstream>
#include <string>

namespace {

const ZrToken theRoot("http://www.zrtoolkit.org/namespace/cr", "array");

// Values with six significant digits, as written documents hold them; fixed seed.
double value(std::mt19937& random) {
  return std::uniform_real_distribution<double>(-1000.0, 1000.0)(random);
}

ZrXmlVectorType<ZrXmlBasicType<double>> doubles(size_t count) {
  std::mt19937 random(20240601);
  ZrXmlVectorType<ZrXmlBasicType<double>> vector;
  vector.reserve(static_cast<ZrU32>(count));
  for (size_t i = 0; i < count; ++i) vector.pushBack(value(random));
  return vector;
}

ZrXmlVectorVector points(size_t count) {
  std::mt19937 random(20240602);
  ZrXmlVectorVector path;
  path.reserve(static_cast<ZrU32>(count));
  for (size_t i = 0; i < count; ++i) path.pushBack(ZrVector(value(random), value(random), value(random)));
  return path;
}

template <class Object>
std::string document(const Object& object) {
  std::ostringstream out;
  ZrXmlWriter writer("array.xml", out);
  writer.header(theRoot, theRoot.namespaceText());
  object.write(writer);
  writer.writeEndTag();
  return out.str();
}

template <class Object>
void readDocument(const std::string& text, Object& object) {
  std::istringstream in(text);
  ZrXmlReader reader("array.xml", in);
  reader.readXml();
  object.read(reader);
  reader.readXml();
}

template <class Object>
void write(benchmark::State& state, const Object& object) {
  size_t bytes = 0;
  for (auto _ : state) {
    const std::string text = document(object);
    bytes = text.size();
    benchmark::DoNotOptimize(text.data());
  }
  state.SetBytesProcessed(static_cast<int64_t>(bytes * state.iterations()));
  state.SetComplexityN(state.range(0));
}

template <class Object>
void read(benchmark::State& state, const Object& written) {
  const std::string text = document(written);
  for (auto _ : state) {
    Object object;
    readDocument(text, object);
    benchmark::DoNotOptimize(object.size());
    if (object.size() != written.size()) state.SkipWithError("read back a different size");
  }
  state.SetBytesProcessed(static_cast<int64_t>(text.size() * state.iterations()));
  state.SetComplexityN(state.range(0));
}

void WriteDoubles(benchmark::State& state) { write(state, doubles(static_cast<size_t>(state.range(0)))); }
void ReadDoubles(benchmark::State& state) { read(state, doubles(static_cast<size_t>(state.range(0)))); }
void WritePoints(benchmark::State& state) { write(state, points(static_cast<size_t>(state.range(0)))); }
void ReadPoints(benchmark::State& state) { read(state, points(static_cast<size_t>(state.range(0)))); }

BENCHMARK(WriteDoubles)->RangeMultiplier(10)->Range(10000, 1000000)->Unit(benchmark::kMillisecond)->Complexity(benchmark::oN);
BENCHMARK(ReadDoubles)->RangeMultiplier(10)->Range(10000, 1000000)->Unit(benchmark::kMillisecond)->Complexity(benchmark::oN);
BENCHMARK(WritePoints)->RangeMultiplier(10)->Range(1000, 100000)->Unit(benchmark::kMillisecond)->Complexity(benchmark::oN);
BENCHMARK(ReadPoints)->RangeMultiplier(10)->Range(1000, 100000)->Unit(benchmark::kMillisecond)->Complexity(benchmark::oN);

}  // namespace

BENCHMARK_MAIN();
