#ifndef ZR_DLL_LOADER_H
#define ZR_DLL_LOADER_H

#include <string>
#include <vector>

// Loads a plug-in library by name and looks up its entry points.
//
// The names come from documents, so loading is confined: a library is looked up only in the
// directories the application puts on the search path (setSearchPath, addSearchDirectory) and then
// in those of the environment variable ZR_PLUGIN_PATH (colon-separated, absolute directories only:
// empty and relative entries are ignored), in that order. A name holding
// a path separator ('/' or '\\') or ".." is refused, so a document cannot reach outside those
// directories. Refusals and libraries that are found but do not load are reported through Zr::Print
// with print type 5; a name found nowhere is not reported (callers try several names and pass over
// the ones that are not there), but lastError() tells why loading failed.
//
// A library once loaded stays loaded for the life of the process: the loader never unloads it, so
// creators taken from it stay callable after the loader object is gone.
class ZrDllLoader {
 public:
  ZrDllLoader();
  ~ZrDllLoader();
  ZrDllLoader(const ZrDllLoader&) = default;  // a copy refers to the same (never unloaded) library
  ZrDllLoader& operator=(const ZrDllLoader&) = default;

  // Loads name + extension (extension given with its dot, e.g. ".zrp") from the first search
  // directory holding it. A loader that has loaded a library before forgets it (without unloading).
  bool loadDll(const std::string& name, const std::string& extension);
  // The address of the exported symbol, or null (without a message) when nothing is loaded or the
  // library lacks it.
  void* getFunction(const std::string& name);

  bool isLoaded() const { return m_theHandle != nullptr; }
  const std::string& loadedPath() const { return m_theLoadedPath; }
  const std::string& lastError() const { return m_theLastError; }

  // The application's search directories; process-wide and unguarded, like the library's other
  // class-wide settings: set them up before reading.
  static void setSearchPath(const std::vector<std::string>& directories);
  static void addSearchDirectory(const std::string& directory);
  static const std::vector<std::string>& searchPath();
  // The directories actually searched: the application's, then those of ZR_PLUGIN_PATH.
  static std::vector<std::string> effectiveSearchPath();

  static const char* const m_thePluginPathVariable;  // "ZR_PLUGIN_PATH"

 private:
  bool refuse(const std::string& why, const std::string& name);

  void* m_theHandle;
  std::string m_theLoadedPath;
  std::string m_theLastError;
};

#endif
