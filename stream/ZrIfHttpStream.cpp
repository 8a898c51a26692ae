#include "ZrIfHttpStream.h"

ZrIfHttpStream::ZrIfHttpStream(const char*, int) : std::istream(nullptr) { setstate(std::ios::failbit); }

ZrIfHttpStream::~ZrIfHttpStream() = default;
