#include "ZrPrint.h"

#include <cstdarg>
#include <cstdio>
#include <vector>

namespace Zr {

PrintStream::PrintStream(Print& owner, int printType, const char* signature)
    : m_theOwner(&owner), m_thePrintType(printType) {
  if (signature && *signature) *this << signature << '\n';
}

PrintStream::PrintStream(PrintStream&& other) noexcept
    : std::ostringstream(std::move(other)), m_theOwner(other.m_theOwner), m_thePrintType(other.m_thePrintType) {
  other.m_theOwner = nullptr;  // the moved-from stream must not emit a second, empty message
}

PrintStream::~PrintStream() {
  if (m_theOwner) m_theOwner->emit(m_thePrintType, str());
}

Print& Print::instance() {
  static Print theInstance;
  return theInstance;
}

void Print::write(int printType, const char* format, ...) {
  va_list args;
  va_start(args, format);
  va_list copy;
  va_copy(copy, args);
  char small[512];
  int needed = std::vsnprintf(small, sizeof small, format, args);
  va_end(args);
  if (needed < 0) {
    va_end(copy);
    return;
  }
  if (static_cast<size_t>(needed) < sizeof small) {
    va_end(copy);
    emit(printType, std::string(small, static_cast<size_t>(needed)));
    return;
  }
  std::vector<char> large(static_cast<size_t>(needed) + 1);
  std::vsnprintf(large.data(), large.size(), format, copy);
  va_end(copy);
  emit(printType, std::string(large.data(), static_cast<size_t>(needed)));
}

PrintStream Print::ostream(int printType, const char* signature) { return PrintStream(*this, printType, signature); }

void Print::setSink(PrintSink sink) {
  std::lock_guard<std::recursive_mutex> lock(m_theSinkLock);
  m_theSink = std::move(sink);
}

void Print::resetSink() { setSink(nullptr); }

const char* Print::typeName(int printType) {
  switch (printType) {
    case PrintDebug: return "debug";
    case PrintInfo: return "info";
    case PrintNotice: return "notice";
    case PrintSizeWarning: return "size warning";
    case PrintError: return "error";
    case PrintPluginError: return "plug-in error";
    default: return "message";
  }
}

namespace {
typedef std::shared_ptr<std::atomic<PrintWatcher*>> WatcherHandle;

// The watchers raised on this thread, innermost last. Entries of watchers that are gone hold null.
std::vector<WatcherHandle>& threadWatchers() {
  thread_local std::vector<WatcherHandle> theWatchers;
  return theWatchers;
}

// The innermost live watcher of this thread; entries of watchers gone are dropped on the way.
PrintWatcher* innermostLiveWatcher() {
  std::vector<WatcherHandle>& watchers = threadWatchers();
  while (!watchers.empty()) {
    if (PrintWatcher* watcher = watchers.back()->load(std::memory_order_acquire)) return watcher;
    watchers.pop_back();
  }
  return nullptr;
}
}  // namespace

PrintWatcher::PrintWatcher() : m_theHandle(std::make_shared<std::atomic<PrintWatcher*>>(this)) {}

PrintWatcher::PrintWatcher(const PrintWatcher&) : PrintWatcher() {}

PrintWatcher::~PrintWatcher() {
  m_theHandle->store(nullptr, std::memory_order_release);
  Print::m_theWatcherEpoch.fetch_add(1, std::memory_order_relaxed);
}

std::atomic<std::uint64_t> Print::m_theWatcherEpoch{0};

void Print::emit(int printType, const std::string& message) {
  PrintWatcher* watcher = innermostLiveWatcher();
  if (watcher && !watcher->observe(printType, message)) return;
  std::lock_guard<std::recursive_mutex> lock(m_theSinkLock);
  if (m_theSink) {
    m_theSink(printType, message);
  } else {
    std::fwrite(message.data(), 1, message.size(), stderr);
    std::fflush(stderr);
  }
}

void Print::raiseWatcher(PrintWatcher& watcher) {
  m_theWatcherEpoch.fetch_add(1, std::memory_order_relaxed);
  std::vector<WatcherHandle>& watchers = threadWatchers();
  for (auto entry = watchers.begin(); entry != watchers.end(); ++entry) {
    if (*entry != watcher.m_theHandle) continue;
    watchers.erase(entry);
    break;
  }
  watchers.push_back(watcher.m_theHandle);
}

void Print::dropWatcher(PrintWatcher& watcher) {
  m_theWatcherEpoch.fetch_add(1, std::memory_order_relaxed);
  std::vector<WatcherHandle>& watchers = threadWatchers();
  for (auto entry = watchers.begin(); entry != watchers.end(); ++entry) {
    if (*entry == watcher.m_theHandle) {
      watchers.erase(entry);
      return;
    }
  }
}

const PrintWatcher* Print::innermostWatcher() const { return innermostLiveWatcher(); }

}  // namespace Zr
