#include <windows.h>
// windows.h comes first
#include <filesystem>
#include <system_error>

#include "emulator/platform/new_file.h"

namespace emulator {

void CreateNewFile(const std::string& path) {
  const std::filesystem::path name(std::u8string(path.begin(), path.end()));
  HANDLE const file =
      CreateFileW(name.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr);
  if (file == INVALID_HANDLE_VALUE)
    throw std::system_error(static_cast<int>(GetLastError()), std::system_category(), path);
  CloseHandle(file);
}

RemovedWhenInterrupted::RemovedWhenInterrupted(std::string path) : path_(std::move(path)) {}
RemovedWhenInterrupted::~RemovedWhenInterrupted() = default;

}  // namespace emulator
