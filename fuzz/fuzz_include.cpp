// Documents that include each other (see ZrFuzz::readWithIncludes for the layout of an input).
#include "ZrFuzzDrivers.h"

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  ZrFuzz::silencePrint();
  ZrFuzz::confineReading();
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  ZrFuzz::readWithIncludes(std::string(reinterpret_cast<const char*>(data), size));
  return 0;
}
