// Events of the tokenizer over the input, readXml() mixed with the fast operations in an order that
// the input's first bytes choose (see ZrFuzz::tokenize for the layout of an input).
#include "ZrFuzzDrivers.h"

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  ZrFuzz::silencePrint();
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  ZrFuzz::tokenize(data, size);
  return 0;
}
