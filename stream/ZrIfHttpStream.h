#ifndef ZR_IF_HTTP_STREAM_H
#define ZR_IF_HTTP_STREAM_H

#include <istream>
#include <memory>
#include <string>
#include <vector>

class ZrHttpStreamBuffer;

// An input stream over an HTTP GET (http:// and https:// only; redirects are followed up to
// defaultMaxRedirects()).
//
// The constructor connects and waits until the response headers are complete (or the first body bytes
// or the end of the transfer have come). The stream is then in a failed state (fail() is true) when
// the name did not resolve, the connection was refused, the status is 400 or above, or a time-out
// struck; the reason is printed through Zr::Print with print type 4. Otherwise the body is read as it
// arrives: at most a small window of it is held in memory at any time, however long the body is.
//
// A transfer that breaks off after the headers (time-out, lost connection, body over the size limit)
// ends the stream early with a message and the bad bit set.
//
// The open mode is accepted for the interface's sake; an HTTP stream is always an input stream.
class ZrIfHttpStream : public std::istream {
 public:
  ZrIfHttpStream(const char* url, int openMode);
  // The same, with the transfer (connecting included) ended after timeoutMs milliseconds at the latest,
  // when that is shorter than the class defaults; 0 for the defaults alone. A reader gives an included
  // document what is left of its read's time.
  ZrIfHttpStream(const char* url, int openMode, long timeoutMs);
  ~ZrIfHttpStream() override;
  ZrIfHttpStream(const ZrIfHttpStream&) = delete;
  ZrIfHttpStream& operator=(const ZrIfHttpStream&) = delete;

  // The final status of the response, 0 when no response came.
  long status() const;

  // Class-wide defaults, read by every stream when it is constructed. Times in milliseconds.
  // Connect time-out (name resolution included), default 10 000.
  static long defaultConnectTimeoutMs();
  static void setDefaultConnectTimeoutMs(long milliseconds);
  // Time-out of the whole transfer, default 600 000 (ten minutes): long enough for a large document over
  // a slow line, and an end for a server that drips its body a byte at a time. 0 for none.
  static long defaultTimeoutMs();
  static void setDefaultTimeoutMs(long milliseconds);
  // A transfer that delivers no byte at all for this long is abandoned, default 30 000. This is what
  // catches a server that accepts the connection and then goes silent.
  static long defaultStallTimeoutMs();
  static void setDefaultStallTimeoutMs(long milliseconds);
  // Body size limit in bytes, default 1 GiB (an endless body ends there; memory stays bounded either
  // way). 0 for no limit.
  static unsigned long long defaultMaxBodySize();
  static void setDefaultMaxBodySize(unsigned long long bytes);
  // Redirects followed, default 5.
  static long defaultMaxRedirects();
  static void setDefaultMaxRedirects(long redirects);
  // The hosts documents may come from, compared without regard to case; empty (the default) for any.
  // The host of the URL and of every redirect is checked: a refused one fails the stream with a message,
  // so that documents cannot send an application to services of its own network.
  static const std::vector<std::string>& defaultAllowedHosts();
  static void setDefaultAllowedHosts(const std::vector<std::string>& hosts);

 private:
  std::unique_ptr<ZrHttpStreamBuffer> m_theBuffer;
};

#endif
