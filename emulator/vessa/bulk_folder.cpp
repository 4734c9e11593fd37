#include "emulator/vessa/bulk_folder.h"

#include <fmt/format.h>

#include <filesystem>
#include <system_error>
#include <utility>

#include "emulator/vessa/exit_code.h"
#include "emulator/vessa/tag_text.h"

namespace emulator::tool {
namespace {

/// Characters that RFC 3986 leaves to themselves in a path; all others by their number.
std::string UriText(std::string_view path) {
  constexpr std::string_view kPlain =
      "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-._~/!$&'()*+,;=@";
  std::string uri;
  for (const char byte : path) {
    if (kPlain.find(byte) == std::string_view::npos) {
      uri += fmt::format("%{:02X}", static_cast<unsigned char>(byte));
    } else {
      uri += byte;
    }
  }
  return uri;
}

}  // namespace

BulkFolder::BulkFolder(std::string path) : path_(std::move(path)) {
  std::error_code error;
  std::filesystem::create_directories(std::u8string(path_.begin(), path_.end()), error);
  if (error) throw ToolError(kOutputUnwritable, fmt::format("{}: {}", path_, error.message()));
}

std::string BulkFolder::Begin(std::uint32_t tag) {
  const std::string name = fmt::format("{}/{:06}-{}.bin", path_, ++values_, PlainTag(tag));
  file_ = std::make_unique<OutputFile>(name);
  return UriText(name);
}

void BulkFolder::Finish() {
  file_->Finish();
  file_.reset();
}

}  // namespace emulator::tool
