#include "ZrxmlTool.h"

#include "ZrxmlDocumentReader.h"

#include <ZrPrint.h>
#include <ZrIfHttpStream.h>
#include <ZrXmlReader.h>
#include <ZrXmlWriter.h>

#include <filesystem>
#include <fstream>
#include <memory>

#include <cerrno>
#include <cstdarg>
#include <cstring>
#include <iostream>
#include <cstdio>
#include <unistd.h>
#include <vector>

namespace zrxml {

namespace {
// Files below this size are read too quickly for a progress line to help.
const std::size_t theProgressThreshold = 8u << 20;
const std::chrono::milliseconds theProgressInterval(200);
}  // namespace

const char* const theWrittenFormOptions = "[--namespace-complete] [--lossless-reals] [--escape-markup]";

bool takeWrittenFormOption(const char* argument) {
  const std::string option = argument;
  if (option == "--namespace-complete")
    ZrXmlWriter::setDefaultNamespaceComplete(true);
  else if (option == "--lossless-reals")
    ZrXmlWriter::setDefaultLosslessReals(true);
  else if (option == "--escape-markup")
    ZrXmlWriter::setDefaultEscapeMarkup(true);
  else
    return false;
  return true;
}

bool takeProfileOption(int argc, char** argv, int& i) {
  if (std::string(argv[i]) != "--profile" || i + 1 >= argc) return false;
  const std::string profile = argv[i + 1];
  if (profile == "standard") {
    ZrXmlWriter::setDefaultOptions(ZrXmlWriteOptions::standard());
    ZrXmlReader::setDefaultOptions(ZrXmlReadOptions(ZrXmlReader::defaultOptions()).setExpandReferences(true).setCheckValues(true));
  } else if (profile == "toolkit") {
    ZrXmlWriter::setDefaultOptions(ZrXmlWriteOptions::toolkit());
  } else {
    return false;
  }
  ++i;
  return true;
}

PrintRouter::PrintRouter() {
  Zr::Print::instance().setSink([this](int printType, const std::string& message) { route(printType, message); });
}

PrintRouter::~PrintRouter() { Zr::Print::instance().resetSink(); }

namespace {

// Set once standard output has failed: the report of it must not try standard output again.
bool theOutputFailed = false;

[[noreturn]] void endOnFailedOutput(int error) {
  theOutputFailed = true;
  Zr::Print::instance().write(Zr::PrintError, "zrxml Error: standard output could not be written: %s\n",
                              std::strerror(error ? error : EIO));
  std::fflush(stderr);
  // Nothing that is still open may write again (a flush at exit would fail and report once more).
  std::_Exit(ExitFaults);
}

}  // namespace

void writeStandardOutput(const char* data, std::size_t size) {
  if (theOutputFailed) return;
  errno = 0;
  if (std::fwrite(data, 1, size, stdout) != size || std::ferror(stdout)) endOnFailedOutput(errno);
}

void flushStandardOutput() {
  if (theOutputFailed) return;
  errno = 0;
  if (std::fflush(stdout) != 0 || std::ferror(stdout)) endOnFailedOutput(errno);
}

// A buffer of its own, so that a document written a character at a time costs no stdio call per character.
class StandardOutput::Buffer : public std::streambuf {
 public:
  Buffer() { setp(m_theArea, m_theArea + sizeof m_theArea); }

 protected:
  int_type overflow(int_type c) override {
    passOn();
    if (!traits_type::eq_int_type(c, traits_type::eof())) {
      *pptr() = traits_type::to_char_type(c);
      pbump(1);
    }
    return traits_type::not_eof(c);
  }
  int sync() override {
    passOn();
    flushStandardOutput();
    return 0;
  }

 private:
  void passOn() {
    writeStandardOutput(pbase(), static_cast<std::size_t>(pptr() - pbase()));
    setp(m_theArea, m_theArea + sizeof m_theArea);
  }
  char m_theArea[4096];
};

StandardOutput::StandardOutput() : m_theBuffer(new Buffer), m_theOriginal(std::cout.rdbuf(m_theBuffer.get())) {}

StandardOutput::~StandardOutput() {
  std::cout.flush();
  std::cout.rdbuf(m_theOriginal);
}

void PrintRouter::route(int printType, const std::string& message) {
  if (printType == Zr::PrintInfo) {
    writeStandardOutput(message.data(), message.size());
    return;
  }
  if (printType == Zr::PrintNotice) {  // the progress line, redrawn in place
    std::fwrite(message.data(), 1, message.size(), stderr);
    std::fflush(stderr);
    m_theProgressShown = message.find('\n') == std::string::npos && !message.empty();
    return;
  }
  if (m_theProgressShown) {
    std::fputs("\r\033[K", stderr);
    m_theProgressShown = false;
  }
  bool detailLine = !message.empty() && message[0] == '\t';
  if (printType >= Zr::PrintSizeWarning && !detailLine) ++m_theFaults;
  std::cout.flush();
  flushStandardOutput();  // what the command printed so far comes before the report
  std::fwrite(message.data(), 1, message.size(), stderr);
  std::fflush(stderr);
}

void output(const char* format, ...) {
  va_list args;
  va_start(args, format);
  va_list copy;
  va_copy(copy, args);
  int needed = std::vsnprintf(nullptr, 0, format, args);
  va_end(args);
  if (needed < 0) {
    va_end(copy);
    return;
  }
  std::vector<char> text(static_cast<std::size_t>(needed) + 1);
  std::vsnprintf(text.data(), text.size(), format, copy);
  va_end(copy);
  Zr::Print::instance().write(Zr::PrintInfo, "%s", text.data());
}

Progress::Progress(const std::string& path, std::size_t totalBytes)
    : m_thePath(path),
      m_theTotal(totalBytes),
      m_theEnabled(totalBytes >= theProgressThreshold && isatty(STDERR_FILENO)),
      m_theLastShown(std::chrono::steady_clock::now()) {}

Progress::~Progress() {
  if (m_theEnabled) Zr::Print::instance().write(Zr::PrintNotice, "\r\033[K");
}

void Progress::update(std::size_t bytesRead) {
  if (!m_theEnabled) return;
  auto now = std::chrono::steady_clock::now();
  if (now - m_theLastShown < theProgressInterval) return;
  m_theLastShown = now;
  unsigned percent = static_cast<unsigned>(100.0 * static_cast<double>(bytesRead) / static_cast<double>(m_theTotal));
  Zr::Print::instance().write(Zr::PrintNotice, "\rzrxml: reading %s  %3u%%", m_thePath.c_str(), percent > 100 ? 100 : percent);
}

namespace {

bool isHttpReference(const std::string& path) { return path.compare(0, 7, "http://") == 0 || path.compare(0, 8, "https://") == 0; }

// The document's input: a file stream, or a stream over HTTP for a reference. Null when it cannot be opened.
std::unique_ptr<std::istream> openDocument(const std::string& path) {
  std::unique_ptr<std::istream> in;
  std::error_code noStatus;
  if (!isHttpReference(path) && std::filesystem::is_directory(path, noStatus)) {
    // A directory opens as a file stream on some systems and only fails on the first read.
    Zr::Print::instance().write(Zr::PrintError, "zrxml Error: cannot open file: it is a directory.\n\tFile: %s\n", path.c_str());
    return in;
  }
  if (isHttpReference(path))
    in.reset(new ZrIfHttpStream(path.c_str(), std::ios::in));
  else
    in.reset(new std::ifstream(path, std::ios::binary));
  if (!*in) {
    Zr::Print::instance().write(Zr::PrintError, "zrxml Error: cannot open file.\n\tFile: %s\n", path.c_str());
    in.reset();
  }
  return in;
}

}  // namespace

bool readDocument(const std::string& path, const std::function<void(ZrXmlReader&, int)>& onEvent,
                  DocumentSummary& summary) {
  std::unique_ptr<std::istream> in = openDocument(path);
  if (!in) return false;
  std::error_code noSize;
  std::size_t size = isHttpReference(path) ? 0 : static_cast<std::size_t>(std::filesystem::file_size(path, noSize));
  {
    Progress progress(path, noSize ? 0 : size);
    DocumentReader reader(path, *in);
    for (;;) {
      int mode = reader.readXml();
      ++summary.events;
      onEvent(reader, mode);
      while (reader.remainingNumOfAttributes() > 0) reader.attributeValue();
      const ZrXmlFileReader& document = *reader.currentFileReader();
      if (mode == 5 || (mode == 0 && reader.depth() == 1 && document.atEndOfInput())) break;
      if (progress.enabled() && (summary.events & 0xfff) == 0) {
        std::streamoff position = in->tellg();
        if (position >= 0) progress.update(static_cast<std::size_t>(position));
      }
    }
    // A document cut short is reported by the reader, and counted; several elements left open are
    // reported again by the file reader when the reader lets it go, after this count is taken.
    summary.lines = reader.lineCountOfFile();
    summary.faults = reader.faultCount();
    summary.warnings = reader.warnings();
  }
  return true;
}

}  // namespace zrxml
