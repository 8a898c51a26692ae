#ifndef ZR_PRINT_H
#define ZR_PRINT_H

#include <functional>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

namespace Zr {

// Categories of messages. The numbers are part of the toolkit's interface: applications filter on them.
enum PrintType {
  PrintDebug = 0,
  PrintInfo = 1,
  PrintNotice = 2,
  PrintSizeWarning = 3,  // a container's announced size differs from what was read
  PrintError = 4,        // errors and warnings of reading and writing
  PrintPluginError = 5   // plug-in libraries that fail to provide their entry points
};

// Receives each finished message whole: its print type and its full text.
typedef std::function<void(int printType, const std::string& message)> PrintSink;

class Print;

// One message under construction. Pieces are inserted with <<; the message reaches the sink
// when the stream is destroyed, normally at the end of the statement that created it.
class PrintStream : public std::ostringstream {
 public:
  PrintStream(Print& owner, int printType, const char* signature);
  PrintStream(PrintStream&& other) noexcept;
  PrintStream(const PrintStream&) = delete;
  PrintStream& operator=(const PrintStream&) = delete;
  ~PrintStream() override;

 private:
  Print* m_theOwner;
  int m_thePrintType;
};

// The toolkit's single channel for messages. By default each message goes to standard error and is
// flushed at once; tests and applications can route messages elsewhere with setSink.
class Print {
 public:
  static Print& instance();

  // printf-style message. The text is written exactly as formatted: the caller supplies line ends.
  void write(int printType, const char* format, ...)
#if defined(__GNUC__)
      __attribute__((format(printf, 3, 4)))
#endif
      ;

  // A stream headed by the calling function's full signature (pass __PRETTY_FUNCTION__), into which
  // a message is inserted piece by piece: Print::instance().ostream(PrintError, __PRETTY_FUNCTION__) << ...;
  PrintStream ostream(int printType, const char* signature);

  // Replaces the destination of all messages; an empty sink restores standard error.
  void setSink(PrintSink sink);
  void resetSink();

  // The name of a print type, for sinks that label their output.
  static const char* typeName(int printType);

  // Hands one finished message to the current sink, then to the innermost watcher.
  void emit(int printType, const std::string& message);

  // Watchers observe messages beside the sink, for counting rather than showing them. Only the
  // innermost watcher (the one raised last) sees a message, so that of several readers alive at once
  // the one that is reading is told of its document's faults. Each watcher is known by its owner's
  // address: raising an owner's watcher again moves it innermost (and keeps the function it was
  // first given); dropping it removes it wherever it stands.
  void raiseWatcher(const void* owner, const PrintSink& watcher);
  void dropWatcher(const void* owner);
  const void* innermostWatcher() const { return m_theWatchers.empty() ? nullptr : m_theWatchers.back().first; }

 private:
  Print() = default;
  PrintSink m_theSink;
  std::vector<std::pair<const void*, PrintSink>> m_theWatchers;
};

}  // namespace Zr

#endif
