// One round-trip body for every container the library defines, nesting included: written inside a
// document, read back equal, with no message, and the read ending on the container's own end tag.
#include <ZrTestSupport.h>
#include <ZrXmlMapType.h>
#include <ZrXmlObjectVisitor.h>
#include <ZrXmlPairType.h>
#include <ZrXmlReader.h>
#include <ZrXmlSetType.h>
#include <ZrXmlVectorType.h>
#include <ZrXmlWriter.h>
#include <gtest/gtest.h>

#include <sstream>
#include <string>

namespace {

#define B(T) ZrXmlBasicType<T>

// A value for seed; different seeds give different values, all of which survive the text form
// (six significant digits, single words). The tag selects the overload for the wanted type.
template <class T>
struct Tag {};
template <class T>
T sample(int seed) {
  return make(Tag<T>(), seed);
}

template <class T>
ZrXmlBasicType<T> make(Tag<ZrXmlBasicType<T>>, int seed) { return ZrXmlBasicType<T>(static_cast<T>(seed * 3 + 1)); }
B(bool) make(Tag<B(bool)>, int seed) { return B(bool)(seed % 2 == 0); }
B(char) make(Tag<B(char)>, int seed) { return B(char)(static_cast<char>('a' + seed % 26)); }
B(double) make(Tag<B(double)>, int seed) { return B(double)(seed * -1.25 + 0.5); }
B(std::string) make(Tag<B(std::string)>, int seed) { return B(std::string)("w" + std::to_string(seed)); }
ZrXmlVector make(Tag<ZrXmlVector>, int seed) { return ZrXmlVector(seed, seed * 0.5, -seed); }
// Unit quaternions whose components are exact in six digits, so normalising them changes nothing.
ZrXmlOrientation make(Tag<ZrXmlOrientation>, int seed) {
  const ZrOrientation choices[] = {ZrOrientation(1, 0, 0, 0), ZrOrientation(0, 0.6, 0.8, 0),
                                   ZrOrientation(0.5, 0.5, 0.5, 0.5)};
  return ZrXmlOrientation(choices[seed % 3]);
}
ZrXmlVectorVector make(Tag<ZrXmlVectorVector>, int seed) {
  ZrXmlVectorVector vectors;
  for (int i = 0; i < seed % 3 + 1; ++i) vectors.pushBack(ZrVector(i, seed, 0.25));
  return vectors;
}
template <class F, class S>
ZrXmlPairType<F, S> make(Tag<ZrXmlPairType<F, S>>, int seed) {
  return ZrXmlPairType<F, S>(sample<F>(seed), sample<S>(seed + 1));
}
template <class E>
ZrXmlVectorType<E> make(Tag<ZrXmlVectorType<E>>, int seed) {
  ZrXmlVectorType<E> vector;
  for (int i = 0; i < seed % 3 + 11; ++i) vector.pushBack(sample<E>(seed + i));  // more than one content row
  return vector;
}
template <class E>
ZrXmlSetType<E> make(Tag<ZrXmlSetType<E>>, int seed) {
  ZrXmlSetType<E> set;
  for (int i = 0; i < 4; ++i) set.insert(sample<E>(seed + i));
  return set;
}
template <class K, class V>
ZrXmlMapType<K, V> make(Tag<ZrXmlMapType<K, V>>, int seed) {
  ZrXmlMapType<K, V> map;
  for (int i = 0; i < 3; ++i) map.set(sample<K>(seed + i), sample<V>(seed * 7 + i));
  return map;
}

// The roles under which a visitor is handed a container's parts.
template <class E>
std::string rolesOf(const ZrXmlVectorType<E>*) { return "element "; }
template <class E>
std::string rolesOf(const ZrXmlSetType<E>*) { return "element "; }
template <class K, class V>
std::string rolesOf(const ZrXmlMapType<K, V>*) { return "key value "; }
template <class F, class S>
std::string rolesOf(const ZrXmlPairType<F, S>*) { return "first second "; }

// The container as the "data" child of a document, with a sibling after it.
template <class C>
std::string document(const C& container) {
  std::ostringstream out;
  ZrXmlWriter writer("container.xml", out);
  writer.writeStartTag(ZrToken("urn:test", "doc"));
  writer.writeStartTag(ZrToken("urn:test", "data"));
  container.write(writer);
  writer.writeEndTag();
  writer.writeStartTag(ZrToken("urn:test", "after"));
  B(int)(7).write(writer);
  writer.writeEndTag();
  writer.writeEndTag();
  return out.str();
}

template <class C>
void expectRoundTrip(const C& written) {
  const std::string text = document(written);
  std::istringstream in(text);
  ZrXmlReader reader("container.xml", in);
  reader.readXml();
  reader.readXml();
  C back = sample<C>(5);  // reading replaces whatever was there
  EXPECT_TRUE(back.read(reader)) << text;
  EXPECT_TRUE(back == written) << text;
  EXPECT_TRUE(back.equality(&written));
  EXPECT_EQ(reader.readXml(), 1) << text;
  EXPECT_EQ(reader.element().tokenText(), "after") << text;
  while (reader.readXml() != 0) {
  }
}

// Records what a visitor is handed for a container.
class WalkRecorder : public ZrXmlObjectVisitor {
 public:
  using ZrXmlObjectVisitor::visit;
  void visitContainer(const ZrXmlObject* container, const ElementWalk& walk) override {
    visited = container;
    walk([this](const ZrToken& role, const ZrXmlObject&) { roles += role.tokenText() + " "; });
  }
  const ZrXmlObject* visited = nullptr;
  std::string roles;
};

template <class C>
class ZrXmlContainerRoundTrip : public ::testing::Test {};

typedef ::testing::Types<
    ZrXmlVectorType<B(bool)>, ZrXmlVectorType<B(char)>, ZrXmlVectorType<B(short)>, ZrXmlVectorType<B(unsigned short)>,
    ZrXmlVectorType<B(int)>, ZrXmlVectorType<B(unsigned int)>, ZrXmlVectorType<B(unsigned char)>,
    ZrXmlVectorType<B(double)>, ZrXmlVectorType<B(std::string)>, ZrXmlVectorType<ZrXmlVector>,
    ZrXmlVectorType<ZrXmlOrientation>, ZrXmlVectorType<ZrXmlVectorVector>,
    ZrXmlVectorType<ZrXmlPairType<B(double), B(double)>>, ZrXmlVectorType<ZrXmlPairType<B(unsigned int), B(unsigned int)>>,
    ZrXmlVectorType<ZrXmlVectorType<B(bool)>>, ZrXmlVectorType<ZrXmlVectorType<B(int)>>,
    ZrXmlVectorType<ZrXmlVectorType<B(unsigned int)>>, ZrXmlVectorType<ZrXmlVectorType<B(unsigned char)>>,
    ZrXmlVectorType<ZrXmlVectorType<B(double)>>,
    ZrXmlVectorType<ZrXmlVectorType<ZrXmlPairType<B(unsigned int), B(unsigned int)>>>,
    ZrXmlVectorType<ZrXmlVectorType<ZrXmlVectorVector>>, ZrXmlVectorType<ZrXmlVectorType<ZrXmlVectorType<B(double)>>>,
    ZrXmlVectorType<ZrXmlVectorType<ZrXmlVectorType<B(unsigned int)>>>, ZrXmlSetType<B(unsigned int)>,
    ZrXmlMapType<B(std::string), B(bool)>, ZrXmlMapType<B(std::string), B(int)>,
    ZrXmlMapType<B(std::string), B(unsigned int)>, ZrXmlMapType<B(std::string), B(double)>,
    ZrXmlMapType<B(std::string), B(std::string)>, ZrXmlMapType<B(std::string), ZrXmlMapType<B(std::string), B(bool)>>,
    ZrXmlMapType<B(std::string), ZrXmlMapType<B(std::string), B(double)>>,
    ZrXmlMapType<B(std::string), ZrXmlVectorType<B(double)>>, ZrXmlMapType<B(std::string), ZrXmlVectorType<B(unsigned int)>>,
    ZrXmlMapType<B(unsigned int), B(std::string)>, ZrXmlMapType<B(unsigned int), B(unsigned int)>,
    ZrXmlMapType<B(unsigned int), ZrXmlSetType<B(unsigned int)>>, ZrXmlPairType<B(double), B(double)>,
    ZrXmlPairType<B(std::string), B(std::string)>, ZrXmlPairType<B(std::string), B(unsigned int)>,
    ZrXmlPairType<B(unsigned int), B(unsigned int)>, ZrXmlPairType<ZrXmlVector, ZrXmlVector>>
    AllContainers;
TYPED_TEST_SUITE(ZrXmlContainerRoundTrip, AllContainers);

TYPED_TEST(ZrXmlContainerRoundTrip, WrittenAndReadBackEqualCopiedAndVisited) {
  ZrTest::PrintCapture capture;
  expectRoundTrip(TypeParam());
  for (int seed : {1, 2}) expectRoundTrip(sample<TypeParam>(seed));
  EXPECT_EQ(capture.count(), 0u) << capture.all();
  EXPECT_FALSE(sample<TypeParam>(1) == sample<TypeParam>(2));  // the samples are not trivially equal

  const TypeParam filled = sample<TypeParam>(3);
  std::unique_ptr<ZrXmlObject> copy(filled.clone());
  EXPECT_TRUE(copy->equality(&filled));
  EXPECT_TRUE(copy->specified());
  EXPECT_FALSE(filled.equalsDefault());
  EXPECT_TRUE(TypeParam().equalsDefault());
  EXPECT_FALSE(B(int)(0).equality(&filled));

  WalkRecorder recorder;  // the container reaches its own overload, its parts under their roles
  filled.accept(&recorder);
  EXPECT_EQ(recorder.visited, &filled);
  const std::string roles = rolesOf(&filled);
  EXPECT_EQ(recorder.roles.substr(0, roles.size()), roles);
}

#undef B

}  // namespace
