#include "platform/linux/data_location.h"

#include <dlfcn.h>

#include <string>

namespace typeprint {

std::string libraryDataDirectory() {
  Dl_info info{};
  if (!dladdr(reinterpret_cast<void*>(&libraryDataDirectory), &info) || !info.dli_fname) return std::string();
  std::string self = info.dli_fname;
  size_t slash = self.rfind('/');
  std::string folder = slash == std::string::npos ? std::string(".") : self.substr(0, slash);
  return folder + "/../share/typeprint/";
}

std::string libraryDataFile(const std::string& name) {
  std::string folder = libraryDataDirectory();
  return folder.empty() ? folder : folder + name;
}

}  // namespace typeprint
