#include "ZrIfHttpStream.h"

#include <ZrPrint.h>
#include <curl/curl.h>
#include <strings.h>

#include <algorithm>
#include <cctype>
#include <chrono>
#include <cstdio>
#include <streambuf>
#include <string>
#include <vector>

namespace {

// The limits of streams made without their own. Set before streams are made on other threads.
ZrIfHttpStream::Limits& httpDefaults() {
  static ZrIfHttpStream::Limits defaults;
  return defaults;
}

// libcurl wants one global initialisation before the first handle; a function-local static does it
// exactly once. The matching cleanup is left to process exit, since streams may live until then.
void initialiseCurlOnce() {
  static const bool initialised = curl_global_init(CURL_GLOBAL_DEFAULT) == CURLE_OK;
  (void)initialised;
}

// How much body the stream holds before it asks libcurl to pause. libcurl hands over at most one
// receive buffer (16 KiB by default) per callback, so the window never grows far beyond this.
const size_t theWindowHighWater = 64 * 1024;

// The host of url, or of reference resolved against base when reference is given (a Location header may
// be relative); empty when it does not parse.
std::string hostOf(const std::string& base, const char* reference = nullptr) {
  CURLU* parsed = curl_url();
  std::string host;
  char* part = nullptr;
  if (parsed && curl_url_set(parsed, CURLUPART_URL, base.c_str(), 0) == CURLUE_OK &&
      (!reference || curl_url_set(parsed, CURLUPART_URL, reference, 0) == CURLUE_OK) &&
      curl_url_get(parsed, CURLUPART_HOST, &part, 0) == CURLUE_OK) {
    host = part;
    curl_free(part);
  }
  curl_url_cleanup(parsed);
  return host;
}

bool hostAllowed(const std::vector<std::string>& allowed, const std::string& host) {
  if (allowed.empty()) return true;
  return std::any_of(allowed.begin(), allowed.end(), [&host](const std::string& entry) {
    return entry.size() == host.size() &&
           std::equal(entry.begin(), entry.end(), host.begin(),
                      [](char a, char b) { return std::tolower(static_cast<unsigned char>(a)) == std::tolower(static_cast<unsigned char>(b)); });
  });
}

}  // namespace

// The stream buffer behind ZrIfHttpStream: a libcurl transfer driven through the multi interface on
// demand, from underflow(). Body bytes land in a window; when the window is full the transfer is
// paused and resumed only once the reader has consumed the window.
class ZrHttpStreamBuffer : public std::streambuf {
 public:
  ZrHttpStreamBuffer(std::istream& owner, const char* url, const ZrIfHttpStream::Limits& limits);
  ~ZrHttpStreamBuffer() override;
  ZrHttpStreamBuffer(const ZrHttpStreamBuffer&) = delete;
  ZrHttpStreamBuffer& operator=(const ZrHttpStreamBuffer&) = delete;

  // Starts the transfer and drives it until the response headers are in; false when the stream
  // cannot deliver the document (the reason has been printed).
  bool open();
  long status() const { return m_theStatus; }

 protected:
  int_type underflow() override;

 private:
  static size_t receiveBody(char* data, size_t size, size_t count, void* self);
  static size_t receiveHeader(char* data, size_t size, size_t count, void* self);

  void configure();
  template <typename Condition>
  void driveWhile(Condition keepGoing);
  void step();
  void stopTransfer();
  bool stalled();
  bool reportFailure();
  void error(const char* what);

  std::istream& m_theOwner;
  std::string m_theUrl;
  CURL* m_theEasy;
  CURLM* m_theMulti;
  std::vector<char> m_theWindow;
  bool m_thePaused;
  bool m_theHeadersComplete;
  bool m_theDone;
  bool m_theReported;
  bool m_theLimitExceeded;
  std::string m_theRefusal;  // why a redirect was refused, which libcurl's error text would hide
  CURLcode m_theResult;
  long m_theStatus;
  unsigned long long m_theReceived;
  const ZrIfHttpStream::Limits m_theLimits;
  std::chrono::steady_clock::time_point m_theLastActivity;  // when a byte last arrived or the wait began
  char m_theErrorText[CURL_ERROR_SIZE];
};

ZrHttpStreamBuffer::ZrHttpStreamBuffer(std::istream& owner, const char* url, const ZrIfHttpStream::Limits& limits)
    : m_theOwner(owner),
      m_theUrl(url ? url : ""),
      m_theEasy(nullptr),
      m_theMulti(nullptr),
      m_thePaused(false),
      m_theHeadersComplete(false),
      m_theDone(false),
      m_theReported(false),
      m_theLimitExceeded(false),
      m_theResult(CURLE_OK),
      m_theStatus(0),
      m_theReceived(0),
      m_theLimits(limits),
      m_theLastActivity(std::chrono::steady_clock::now()) {
  m_theErrorText[0] = '\0';
  m_theWindow.reserve(theWindowHighWater + CURL_MAX_WRITE_SIZE);
}

ZrHttpStreamBuffer::~ZrHttpStreamBuffer() { stopTransfer(); }

void ZrHttpStreamBuffer::error(const char* what) {
  Zr::Print::instance().write(Zr::PrintError, "ZrIfHttpStream Error: %s\n\tURL: %s\n", what, m_theUrl.c_str());
}

void ZrHttpStreamBuffer::configure() {
  const ZrIfHttpStream::Limits& defaults = m_theLimits;
  curl_easy_setopt(m_theEasy, CURLOPT_URL, m_theUrl.c_str());
  // A reference taken from a document must not reach files or other services of this machine.
  curl_easy_setopt(m_theEasy, CURLOPT_PROTOCOLS_STR, "http,https");
  curl_easy_setopt(m_theEasy, CURLOPT_REDIR_PROTOCOLS_STR, "http,https");
  curl_easy_setopt(m_theEasy, CURLOPT_FOLLOWLOCATION, 1L);
  curl_easy_setopt(m_theEasy, CURLOPT_MAXREDIRS, defaults.maxRedirects);
  curl_easy_setopt(m_theEasy, CURLOPT_NOSIGNAL, 1L);  // a library must not take SIGALRM from its host
  curl_easy_setopt(m_theEasy, CURLOPT_USERAGENT, "zrXml");
  curl_easy_setopt(m_theEasy, CURLOPT_ERRORBUFFER, m_theErrorText);
  curl_easy_setopt(m_theEasy, CURLOPT_CONNECTTIMEOUT_MS, defaults.connectTimeoutMs);
  curl_easy_setopt(m_theEasy, CURLOPT_TIMEOUT_MS, defaults.timeoutMs);
  curl_easy_setopt(m_theEasy, CURLOPT_WRITEFUNCTION, &ZrHttpStreamBuffer::receiveBody);
  curl_easy_setopt(m_theEasy, CURLOPT_WRITEDATA, this);
  curl_easy_setopt(m_theEasy, CURLOPT_HEADERFUNCTION, &ZrHttpStreamBuffer::receiveHeader);
  curl_easy_setopt(m_theEasy, CURLOPT_HEADERDATA, this);
}

bool ZrHttpStreamBuffer::open() {
  if (m_theUrl.empty()) {
    error("no URL given.");
    return false;
  }
  initialiseCurlOnce();
  const std::string host = hostOf(m_theUrl);
  if (!hostAllowed(m_theLimits.allowedHosts, host)) {
    std::string what = "the host " + host + " is not among the allowed hosts.";
    error(what.c_str());
    return false;
  }
  m_theEasy = curl_easy_init();
  m_theMulti = curl_multi_init();
  if (!m_theEasy || !m_theMulti) {
    error("cannot create a transfer.");
    return false;
  }
  configure();
  curl_multi_add_handle(m_theMulti, m_theEasy);

  driveWhile([this] { return !m_theHeadersComplete && m_theWindow.empty() && !m_theDone; });

  curl_easy_getinfo(m_theEasy, CURLINFO_RESPONSE_CODE, &m_theStatus);
  if (m_theDone && m_theResult != CURLE_OK) return reportFailure();
  if (m_theStatus >= 400) {
    std::string what = "the server answered with status " + std::to_string(m_theStatus) + ".";
    error(what.c_str());
    m_theReported = true;
    stopTransfer();
    return false;
  }
  setg(m_theWindow.data(), m_theWindow.data(), m_theWindow.data() + m_theWindow.size());
  return true;
}

// Prints why the transfer ended badly, once; always false.
bool ZrHttpStreamBuffer::reportFailure() {
  if (m_theReported) return false;
  m_theReported = true;
  if (m_theLimitExceeded) {
    std::string what = "the body is larger than the limit of " + std::to_string(m_theLimits.maxBodySize) + " bytes.";
    error(what.c_str());
  } else if (!m_theRefusal.empty()) {
    error(m_theRefusal.c_str());
  } else {
    error(m_theErrorText[0] ? m_theErrorText : curl_easy_strerror(m_theResult));
  }
  return false;
}

// Runs the transfer while the condition holds, sleeping on the socket between steps. libcurl's
// time-outs end the transfer, so the loop is bounded by them.
// The stall time-out is kept here rather than by libcurl's low-speed check, which averages the speed
// over several seconds and so lets a server that sent a few bytes go silent for much longer.
template <typename Condition>
void ZrHttpStreamBuffer::driveWhile(Condition keepGoing) {
  m_theLastActivity = std::chrono::steady_clock::now();  // time spent by the reader is no stall
  while (keepGoing()) {
    step();
    if (!keepGoing() || stalled()) break;
    // Wait for the socket, or for libcurl's own next time-out, which curl_multi_poll honours.
    const long waitMs = m_theLimits.stallTimeoutMs > 0 ? std::min(m_theLimits.stallTimeoutMs, 1000L) : 1000L;
    curl_multi_poll(m_theMulti, nullptr, 0, static_cast<int>(waitMs), nullptr);
  }
}

bool ZrHttpStreamBuffer::stalled() {
  if (m_theLimits.stallTimeoutMs <= 0) return false;
  const auto silent = std::chrono::steady_clock::now() - m_theLastActivity;
  if (silent < std::chrono::milliseconds(m_theLimits.stallTimeoutMs)) return false;
  std::snprintf(m_theErrorText, sizeof(m_theErrorText), "no data received for %ld milliseconds; transfer abandoned.",
                m_theLimits.stallTimeoutMs);
  m_theDone = true;
  m_theResult = CURLE_OPERATION_TIMEDOUT;
  return true;
}

void ZrHttpStreamBuffer::step() {
  int running = 0;
  curl_multi_perform(m_theMulti, &running);
  int queued = 0;
  while (CURLMsg* message = curl_multi_info_read(m_theMulti, &queued)) {
    if (message->msg == CURLMSG_DONE && message->easy_handle == m_theEasy) {
      m_theDone = true;
      m_theResult = message->data.result;
    }
  }
}

void ZrHttpStreamBuffer::stopTransfer() {
  if (m_theMulti && m_theEasy) curl_multi_remove_handle(m_theMulti, m_theEasy);
  if (m_theEasy) curl_easy_cleanup(m_theEasy);
  if (m_theMulti) curl_multi_cleanup(m_theMulti);
  m_theEasy = nullptr;
  m_theMulti = nullptr;
  m_theDone = true;
}

std::streambuf::int_type ZrHttpStreamBuffer::underflow() {
  if (gptr() < egptr()) return traits_type::to_int_type(*gptr());
  m_theWindow.clear();
  setg(nullptr, nullptr, nullptr);
  if (!m_theEasy) return traits_type::eof();

  if (m_thePaused) {
    m_thePaused = false;
    curl_easy_pause(m_theEasy, CURLPAUSE_CONT);  // may hand over the held-back data at once
  }
  driveWhile([this] { return m_theWindow.empty() && !m_theDone; });
  if (m_theWindow.empty()) {
    if (m_theResult != CURLE_OK) {
      reportFailure();
      m_theOwner.setstate(std::ios::badbit);
    }
    stopTransfer();
    return traits_type::eof();
  }
  setg(m_theWindow.data(), m_theWindow.data(), m_theWindow.data() + m_theWindow.size());
  return traits_type::to_int_type(*gptr());
}

size_t ZrHttpStreamBuffer::receiveBody(char* data, size_t size, size_t count, void* self) {
  ZrHttpStreamBuffer& buffer = *static_cast<ZrHttpStreamBuffer*>(self);
  const size_t bytes = size * count;
  if (buffer.m_theWindow.size() >= theWindowHighWater) {
    buffer.m_thePaused = true;
    return CURL_WRITEFUNC_PAUSE;  // libcurl keeps these bytes and offers them again on resume
  }
  if (buffer.m_theLimits.maxBodySize > 0 && buffer.m_theReceived + bytes > buffer.m_theLimits.maxBodySize) {
    buffer.m_theLimitExceeded = true;
    return 0;  // anything but the byte count aborts the transfer
  }
  buffer.m_theReceived += bytes;
  buffer.m_theLastActivity = std::chrono::steady_clock::now();
  buffer.m_theWindow.insert(buffer.m_theWindow.end(), data, data + bytes);
  return bytes;
}

// Called once per header line. An empty line ends a response's headers; the headers of interim (1xx)
// and redirect (3xx) responses are not the ones the stream is waiting for.
size_t ZrHttpStreamBuffer::receiveHeader(char* data, size_t size, size_t count, void* self) {
  ZrHttpStreamBuffer& buffer = *static_cast<ZrHttpStreamBuffer*>(self);
  const size_t bytes = size * count;
  buffer.m_theLastActivity = std::chrono::steady_clock::now();
  if (bytes > 9 && !buffer.m_theLimits.allowedHosts.empty() && strncasecmp(data, "location:", 9) == 0) {
    // A redirect is checked before libcurl follows it: refusing the header ends the transfer.
    std::string target(data + 9, bytes - 9);
    const std::size_t first = target.find_first_not_of(" \t"), last = target.find_last_not_of(" \t\r\n");
    target = first == std::string::npos ? std::string() : target.substr(first, last - first + 1);
    char* current = nullptr;
    curl_easy_getinfo(buffer.m_theEasy, CURLINFO_EFFECTIVE_URL, &current);
    const std::string host = hostOf(current ? current : buffer.m_theUrl, target.c_str());
    if (!hostAllowed(buffer.m_theLimits.allowedHosts, host)) {
      buffer.m_theRefusal = "a redirect to the host " + host + ", which is not among the allowed hosts.";
      return 0;
    }
  }
  const bool blankLine = (bytes == 2 && data[0] == '\r' && data[1] == '\n') || (bytes == 1 && data[0] == '\n');
  if (blankLine) {
    long status = 0;
    curl_easy_getinfo(buffer.m_theEasy, CURLINFO_RESPONSE_CODE, &status);
    if (status >= 200 && (status < 300 || status >= 400)) buffer.m_theHeadersComplete = true;
  }
  return bytes;
}

ZrIfHttpStream::ZrIfHttpStream(const char* url, int openMode) : ZrIfHttpStream(url, openMode, httpDefaults()) {}

ZrIfHttpStream::ZrIfHttpStream(const char* url, int /*openMode*/, const Limits& limits) : std::istream(nullptr) {
  m_theBuffer.reset(new ZrHttpStreamBuffer(*this, url, limits));
  rdbuf(m_theBuffer.get());  // also clears the bad bit that the null buffer set
  if (!m_theBuffer->open()) setstate(std::ios::failbit);
}

// The base class never touches its buffer on destruction, so releasing it here is safe.
ZrIfHttpStream::~ZrIfHttpStream() = default;

long ZrIfHttpStream::status() const { return m_theBuffer->status(); }

bool ZrIfHttpStream::Limits::operator==(const Limits& other) const {
  return connectTimeoutMs == other.connectTimeoutMs && timeoutMs == other.timeoutMs &&
         stallTimeoutMs == other.stallTimeoutMs && maxBodySize == other.maxBodySize &&
         maxRedirects == other.maxRedirects && allowedHosts == other.allowedHosts;
}

// A time-out of 0 means none, so the shorter of two is the smaller non-zero one.
ZrIfHttpStream::Limits ZrIfHttpStream::Limits::within(long milliseconds) const {
  Limits shortened = *this;
  if (milliseconds <= 0) return shortened;
  for (long* timeout : {&shortened.connectTimeoutMs, &shortened.timeoutMs, &shortened.stallTimeoutMs})
    if (*timeout <= 0 || *timeout > milliseconds) *timeout = milliseconds;
  return shortened;
}

const ZrIfHttpStream::Limits& ZrIfHttpStream::defaultLimits() { return httpDefaults(); }
void ZrIfHttpStream::setDefaultLimits(const Limits& limits) { httpDefaults() = limits; }
long ZrIfHttpStream::defaultConnectTimeoutMs() { return httpDefaults().connectTimeoutMs; }
void ZrIfHttpStream::setDefaultConnectTimeoutMs(long milliseconds) { httpDefaults().connectTimeoutMs = milliseconds; }
long ZrIfHttpStream::defaultTimeoutMs() { return httpDefaults().timeoutMs; }
void ZrIfHttpStream::setDefaultTimeoutMs(long milliseconds) { httpDefaults().timeoutMs = milliseconds; }
long ZrIfHttpStream::defaultStallTimeoutMs() { return httpDefaults().stallTimeoutMs; }
void ZrIfHttpStream::setDefaultStallTimeoutMs(long milliseconds) { httpDefaults().stallTimeoutMs = milliseconds; }
unsigned long long ZrIfHttpStream::defaultMaxBodySize() { return httpDefaults().maxBodySize; }

const std::vector<std::string>& ZrIfHttpStream::defaultAllowedHosts() { return httpDefaults().allowedHosts; }

void ZrIfHttpStream::setDefaultAllowedHosts(const std::vector<std::string>& hosts) { httpDefaults().allowedHosts = hosts; }
void ZrIfHttpStream::setDefaultMaxBodySize(unsigned long long bytes) { httpDefaults().maxBodySize = bytes; }
long ZrIfHttpStream::defaultMaxRedirects() { return httpDefaults().maxRedirects; }
void ZrIfHttpStream::setDefaultMaxRedirects(long redirects) { httpDefaults().maxRedirects = redirects; }
