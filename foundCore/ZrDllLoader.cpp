#include "ZrDllLoader.h"

#include "ZrPrint.h"

#include <dlfcn.h>
#include <sys/stat.h>

#include <cstdlib>

const char* const ZrDllLoader::m_thePluginPathVariable = "ZR_PLUGIN_PATH";

namespace {

std::vector<std::string>& applicationSearchPath() {
  static std::vector<std::string> directories;
  return directories;
}

bool isRegularFile(const std::string& path) {
  struct stat info;
  return ::stat(path.c_str(), &info) == 0 && S_ISREG(info.st_mode);
}

// Splits a colon-separated list, dropping empty entries: an empty entry would otherwise mean the
// current directory, which is exactly the kind of implicit place the search path keeps out. Relative
// entries are dropped for the same reason, with a message, since they too name a place that moves
// with the working directory.
void appendPathList(const char* list, std::vector<std::string>& out) {
  if (!list) return;
  std::string text(list);
  size_t start = 0;
  while (start <= text.size()) {
    size_t colon = text.find(':', start);
    if (colon == std::string::npos) colon = text.size();
    if (colon > start) {
      std::string directory = text.substr(start, colon - start);
      if (directory[0] == '/')
        out.push_back(directory);
      else
        // A notice, not a fault: the configuration is the user's, and a run that finds its plug-ins
        // elsewhere succeeds.
        Zr::Print::instance().write(Zr::PrintNotice,
                                    "ZrDllLoader Warning: relative directory in %s ignored.\n\tDirectory: %s\n",
                                    ZrDllLoader::m_thePluginPathVariable, directory.c_str());
    }
    start = colon + 1;
  }
}

}  // namespace

ZrDllLoader::ZrDllLoader() : m_theHandle(nullptr) {}

// Deliberately no dlclose: objects and creators from the library may outlive the loader.
ZrDllLoader::~ZrDllLoader() = default;

void ZrDllLoader::setSearchPath(const std::vector<std::string>& directories) { applicationSearchPath() = directories; }

void ZrDllLoader::addSearchDirectory(const std::string& directory) { applicationSearchPath().push_back(directory); }

const std::vector<std::string>& ZrDllLoader::searchPath() { return applicationSearchPath(); }

std::vector<std::string> ZrDllLoader::effectiveSearchPath() {
  std::vector<std::string> directories;
  for (const std::string& directory : applicationSearchPath())
    if (!directory.empty()) directories.push_back(directory);
  appendPathList(std::getenv(m_thePluginPathVariable), directories);
  return directories;
}

bool ZrDllLoader::refuse(const std::string& why, const std::string& name) {
  m_theLastError = why;
  Zr::Print::instance().write(Zr::PrintPluginError, "ZrDllLoader Error: %s\n\tLibrary: %s\n", why.c_str(), name.c_str());
  return false;
}

bool ZrDllLoader::loadDll(const std::string& name, const std::string& extension) {
  m_theHandle = nullptr;
  m_theLoadedPath.clear();
  m_theLastError.clear();

  const std::string fileName = name + extension;
  if (name.empty()) return refuse("empty library name refused.", fileName);
  if (fileName.find_first_of("/\\") != std::string::npos)
    return refuse("library name holds a path separator; only names on the search path are loaded.", fileName);
  if (fileName.find("..") != std::string::npos) return refuse("library name holds \"..\"; refused.", fileName);
  if (fileName.find('\0') != std::string::npos) return refuse("library name holds a NUL character; refused.", fileName);

  const std::vector<std::string> directories = effectiveSearchPath();
  for (const std::string& directory : directories) {
    std::string candidate = directory;
    if (candidate.back() != '/') candidate += '/';
    candidate += fileName;
    if (!isRegularFile(candidate)) continue;

    // RTLD_NOW: a library with unresolved symbols fails here, with a reason, rather than later
    // in the middle of reading a document.
    void* handle = ::dlopen(candidate.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (!handle) {
      const char* reason = ::dlerror();
      return refuse(std::string("library found but not loadable: ") + (reason ? reason : "unknown reason"), candidate);
    }
    m_theHandle = handle;
    m_theLoadedPath = candidate;
    return true;
  }
  m_theLastError = directories.empty() ? "no search directory is set" : "library not found on the search path";
  return false;
}

void* ZrDllLoader::getFunction(const std::string& name) {
  if (!m_theHandle) {
    m_theLastError = "no library loaded";
    return nullptr;
  }
  ::dlerror();  // clear any earlier error so that the one read below belongs to this lookup
  void* symbol = ::dlsym(m_theHandle, name.c_str());
  if (!symbol) {
    const char* reason = ::dlerror();
    m_theLastError = reason ? reason : "symbol not found";
  }
  return symbol;
}
