// The input read as a robot cell document and as a formula document, each written back and read again.
#include "ZrFuzzDrivers.h"

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  ZrFuzz::silencePrint();
  ZrFuzz::confineReading();
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  ZrFuzz::readModels(std::string(reinterpret_cast<const char*>(data), size));
  return 0;
}
