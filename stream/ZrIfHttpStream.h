#ifndef ZR_IF_HTTP_STREAM_H
#define ZR_IF_HTTP_STREAM_H

#include <istream>
#include <memory>

// An input stream over an HTTP GET. Not yet connected to the network: every stream starts failed.
class ZrIfHttpStream : public std::istream {
 public:
  ZrIfHttpStream(const char* url, int openMode);
  ~ZrIfHttpStream() override;
};

#endif
