#include "emulator/store/lmdb_pixel_files.h"

#include <filesystem>
#include <random>
#include <system_error>

#include "emulator/host_error.h"
#include "emulator/platform/sync_to_disk.h"
#include "emulator/store/store_error.h"

namespace emulator {
namespace {

namespace fs = std::filesystem;

constexpr const char* kGlobal = "VessaStore";

std::vector<Value> PixelsNote(const std::string& name) { return {std::string("pixels"), name}; }
std::vector<Value> DroppedNote(const std::string& name) { return {std::string("dropped"), name}; }

fs::path PathOf(const std::string& utf8) { return std::u8string(utf8.begin(), utf8.end()); }

/// For the owner alone: these are patients' data.
void MakeFolder(const std::string& folder) {
  std::error_code error;
  if (fs::create_directories(PathOf(folder), error))
    fs::permissions(PathOf(folder), fs::perms::owner_all, error);
  if (error) throw StoreError(folder + ": " + error.message());
}

std::vector<std::string> FileNames(const std::string& folder) {
  std::vector<std::string> names;
  std::error_code error;
  for (fs::directory_iterator at(PathOf(folder), error), end; !error && at != end; at.increment(error)) {
    const std::u8string name = at->path().filename().u8string();
    names.emplace_back(name.begin(), name.end());
  }
  if (error) throw StoreError(folder + ": " + error.message());
  return names;
}

/// 128 random bits: no name comes twice.
std::string RandomName() {
  constexpr std::string_view kDigits = "0123456789abcdef";
  constexpr std::size_t kLength = 32;
  std::random_device random;
  std::uniform_int_distribution<std::size_t> digit(0, kDigits.size() - 1);
  std::string name;
  while (name.size() < kLength) name += kDigits[digit(random)];
  return name;
}

}  // namespace

LmdbPixelFiles::LmdbPixelFiles(const std::string& folder)
    : incoming_(folder + "/incoming"), settled_(folder + "/pixels") {
  MakeFolder(incoming_);
  MakeFolder(settled_);
}

void LmdbPixelFiles::Recover(Globals& nodes, std::int64_t oldest_reader) const {
  for (const std::string& name : FileNames(incoming_)) {
    if (nodes.Defined(kGlobal, PixelsNote(name)) != 0) {
      Settle(name);
    } else {
      Remove(name);
    }
  }
  NextSubscript next = nodes.Order(kGlobal, DroppedNote(""));
  for (; !next.subscript.empty(); next = nodes.Order(kGlobal, DroppedNote(next.subscript))) {
    if (AsInteger(nodes.Get(kGlobal, DroppedNote(next.subscript)).value()) > oldest_reader) continue;
    Remove(next.subscript);
    nodes.Kill(kGlobal, DroppedNote(next.subscript));
  }
}

LmdbPixelFiles::NewFile LmdbPixelFiles::Create(Globals& nodes) const {
  const std::string name = RandomName();
  try {
    NewFile file{name, std::make_shared<FileStream>(Incoming(name), FileStream::Mode::kCreate)};
    nodes.Set(kGlobal, PixelsNote(name), std::int64_t{1});
    return file;
  } catch (const std::system_error& error) {
    throw StoreError(Incoming(name) + ": " + error.code().message());
  }
}

std::shared_ptr<FileStream> LmdbPixelFiles::Open(const std::string& name) const {
  // Another process may be about to settle it.
  for (const std::string& path : {Settled(name), Incoming(name), Settled(name)}) {
    std::error_code error;
    if (!fs::exists(PathOf(path), error)) continue;
    try {
      return std::make_shared<FileStream>(path, FileStream::Mode::kRead);
    } catch (const std::system_error& failure) {
      if (failure.code() != std::errc::no_such_file_or_directory)
        throw StoreError(path + ": " + failure.code().message());
    }
  }
  throw StoreError(Settled(name) + ": the file with the pixel data is not there");
}

void LmdbPixelFiles::Drop(Globals& nodes, const std::string& name, std::int64_t transaction) {
  nodes.Kill(kGlobal, PixelsNote(name));
  nodes.Set(kGlobal, DroppedNote(name), transaction);
}

void LmdbPixelFiles::Sync(const NewFile& file) const {
  try {
    file.stream->Flush();
    SyncToDisk(Incoming(file.name));
    SyncToDisk(incoming_);
  } catch (const HostError&) {
    throw StoreError(Incoming(file.name) + ": the file cannot be written");
  } catch (const std::system_error& error) {
    throw StoreError(Incoming(file.name) + ": " + error.code().message());
  }
}

void LmdbPixelFiles::Settle(const std::string& name) const {
  std::error_code error;
  fs::rename(PathOf(Incoming(name)), PathOf(Settled(name)), error);
}

void LmdbPixelFiles::Remove(const std::string& name) const {
  std::error_code error;
  fs::remove(PathOf(Incoming(name)), error);
  fs::remove(PathOf(Settled(name)), error);
}

}  // namespace emulator
