#ifndef ZR_IF_HTTP_STREAM_H
#define ZR_IF_HTTP_STREAM_H

#include <istream>
#include <memory>
#include <string>
#include <vector>

class ZrHttpStreamBuffer;

// An input stream over an HTTP GET (http:// and https:// only; redirects are followed up to the
// limit of its Limits).
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
  // What one transfer may take. Times in milliseconds; 0 for a time or the body size means no limit.
  struct Limits {
    // Connect time-out (name resolution included).
    long connectTimeoutMs = 10000;
    // Time-out of the whole transfer: long enough for a large document over a slow line, and an end for
    // a server that drips its body a byte at a time.
    long timeoutMs = 600000;
    // A transfer that delivers no byte at all for this long is abandoned. This is what catches a server
    // that accepts the connection and then goes silent.
    long stallTimeoutMs = 30000;
    // An endless body ends here; memory stays bounded either way.
    unsigned long long maxBodySize = 1ull << 30;
    // Redirects followed; 0 follows none.
    long maxRedirects = 5;
    // The hosts documents may come from, compared without regard to case; empty for any. The host of the
    // URL and of every redirect is checked: a refused one fails the stream with a message, so that
    // documents cannot send an application to services of its own network.
    std::vector<std::string> allowedHosts;

    // The same limits, with every time-out at most milliseconds (0 for as they are): a reader gives an
    // included document what is left of its read's time.
    Limits within(long milliseconds) const;

    bool operator==(const Limits& other) const;
    bool operator!=(const Limits& other) const { return !(*this == other); }
  };

  // A stream with the class-wide limits, and one with limits of its own (a reader passes its own).
  ZrIfHttpStream(const char* url, int openMode);
  ZrIfHttpStream(const char* url, int openMode, const Limits& limits);
  ~ZrIfHttpStream() override;
  ZrIfHttpStream(const ZrIfHttpStream&) = delete;
  ZrIfHttpStream& operator=(const ZrIfHttpStream&) = delete;

  // The final status of the response, 0 when no response came.
  long status() const;

  // Class-wide limits of streams made without limits of their own, and one forwarder per limit.
  static const Limits& defaultLimits();
  static void setDefaultLimits(const Limits& limits);
  static long defaultConnectTimeoutMs();
  static void setDefaultConnectTimeoutMs(long milliseconds);
  static long defaultTimeoutMs();
  static void setDefaultTimeoutMs(long milliseconds);
  static long defaultStallTimeoutMs();
  static void setDefaultStallTimeoutMs(long milliseconds);
  static unsigned long long defaultMaxBodySize();
  static void setDefaultMaxBodySize(unsigned long long bytes);
  static long defaultMaxRedirects();
  static void setDefaultMaxRedirects(long redirects);
  static const std::vector<std::string>& defaultAllowedHosts();
  static void setDefaultAllowedHosts(const std::vector<std::string>& hosts);

 private:
  std::unique_ptr<ZrHttpStreamBuffer> m_theBuffer;
};

#endif
