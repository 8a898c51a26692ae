#ifndef ZR_PRINT_H
#define ZR_PRINT_H

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
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

// Observes the messages emitted on a thread, beside the sink, to count or record them rather than show
// them. It is raised on the thread that emits (Print::raiseWatcher) and sees only that thread's messages:
// readers on other threads keep their own. Only the innermost watcher of a thread (the one raised last)
// sees a message, so that of several readers alive at once the one that is reading is told of its
// document's faults. A watcher may be destroyed on any thread: it is then passed over wherever it was
// raised. Copies are watchers of their own, raised nowhere.
class PrintWatcher {
 public:
  PrintWatcher();
  PrintWatcher(const PrintWatcher&);
  PrintWatcher& operator=(const PrintWatcher&) { return *this; }
  virtual ~PrintWatcher();

  // Called with each message before the sink; false keeps the message from the sink (the watcher has
  // taken note of it).
  virtual bool observe(int printType, const std::string& message) = 0;

 private:
  friend class Print;
  // What the threads' lists hold: cleared when the watcher goes, so that no list calls a dead watcher.
  std::shared_ptr<std::atomic<PrintWatcher*>> m_theHandle;
};

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
// flushed at once; tests and applications can route messages elsewhere with setSink. Messages may be
// emitted from several threads at once; set the sink before they start.
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

  // Raises the watcher on the calling thread (moving it innermost when it is raised there already);
  // dropping it takes it off the calling thread's list.
  void raiseWatcher(PrintWatcher& watcher);
  void dropWatcher(PrintWatcher& watcher);
  // The innermost watcher of the calling thread, or null.
  const PrintWatcher* innermostWatcher() const;
  // Changes whenever a watcher is raised, dropped or destroyed, on any thread: an owner that found its
  // watcher innermost on a thread, and sees the same figure later on that thread, knows it still is
  // without looking (a look costs a thread-local access; a reader asks once per item it reads).
  static std::uint64_t watcherEpoch() { return m_theWatcherEpoch.load(std::memory_order_relaxed); }

 private:
  Print() = default;
  friend class PrintWatcher;
  static std::atomic<std::uint64_t> m_theWatcherEpoch;
  // The sink is called under the lock: messages of several threads reach it one at a time, whole.
  std::recursive_mutex m_theSinkLock;  // recursive: a sink may itself print
  PrintSink m_theSink;
};

}  // namespace Zr

#endif
