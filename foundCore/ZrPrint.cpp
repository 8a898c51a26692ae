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

void Print::setSink(PrintSink sink) { m_theSink = std::move(sink); }

void Print::resetSink() { m_theSink = nullptr; }

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

void Print::emit(int printType, const std::string& message) {
  if (m_theSink) {
    m_theSink(printType, message);
  } else {
    std::fwrite(message.data(), 1, message.size(), stderr);
    std::fflush(stderr);
  }
  if (!m_theWatchers.empty()) m_theWatchers.back().second(printType, message);
}

void Print::raiseWatcher(const void* owner, const PrintSink& watcher) {
  for (auto entry = m_theWatchers.begin(); entry != m_theWatchers.end(); ++entry) {
    if (entry->first != owner) continue;
    std::pair<const void*, PrintSink> raised = std::move(*entry);
    m_theWatchers.erase(entry);
    m_theWatchers.push_back(std::move(raised));
    return;
  }
  m_theWatchers.emplace_back(owner, watcher);
}

void Print::dropWatcher(const void* owner) {
  for (auto entry = m_theWatchers.begin(); entry != m_theWatchers.end(); ++entry) {
    if (entry->first == owner) {
      m_theWatchers.erase(entry);
      return;
    }
  }
}

}  // namespace Zr
