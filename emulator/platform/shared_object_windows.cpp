#include <windows.h>

#include <filesystem>
#include <stdexcept>
#include <system_error>

#include "emulator/platform/shared_object.h"

namespace emulator {

SharedObject::SharedObject(const std::string& path) {
  // Only a full path keeps the system from searching for the file elsewhere.
  std::error_code ignored;
  const auto full =
      std::filesystem::absolute(std::filesystem::path(std::u8string(path.begin(), path.end())), ignored);
  handle_ = LoadLibraryExW(full.c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
  if (handle_ != nullptr) return;
  const auto code = static_cast<int>(GetLastError());
  throw std::runtime_error("cannot load the library " + path + ": " + std::system_category().message(code) +
                           " (error " + std::to_string(code) + ")");
}

SharedObject::~SharedObject() { FreeLibrary(static_cast<HMODULE>(handle_)); }

SharedObject::Function SharedObject::Find(const char* name) const {
  return reinterpret_cast<Function>(GetProcAddress(static_cast<HMODULE>(handle_), name));
}

}  // namespace emulator
