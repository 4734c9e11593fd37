#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "emulator/globals.h"
#include "emulator/stream_object.h"

namespace emulator {

/// The files with pixel data beside an LMDB database. They follow its transactions: a file is written in the folder
/// `incoming` and moves to `pixels` when the transaction that made it is committed. What a process that was killed
/// has left is put right by the next one that writes, from the notes that the database keeps:
///
///     ^VessaStore("pixels", name)   the file belongs to the database
///     ^VessaStore("dropped", name)  it did before the transaction of this number; it can be removed when nobody reads
///                                   from an older one
class LmdbPixelFiles {
 public:
  /// @param folder  of the database, in UTF-8; the two folders are made in it
  /// @throws StoreError
  explicit LmdbPixelFiles(const std::string& folder);

  /// Puts right what others have left. Nobody else may write meanwhile.
  /// @param oldest_reader  number of the oldest transaction that anybody reads from
  void Recover(Globals& nodes, std::int64_t oldest_reader) const;

  struct NewFile {
    std::string name;
    std::shared_ptr<FileStream> stream;
  };
  /// @throws StoreError
  NewFile Create(Globals& nodes) const;
  /// @throws StoreError
  std::shared_ptr<FileStream> Open(const std::string& name) const;
  /// Notes that the file can be removed once the transaction, of this number, is committed.
  static void Drop(Globals& nodes, const std::string& name, std::int64_t transaction);

  /// Before a commit: a file is on the disk. @throws StoreError
  void Sync(const NewFile& file) const;
  /// After it: a file is where it belongs. What fails here is put right by Recover.
  void Settle(const std::string& name) const;
  /// Removes a file, wherever it is.
  void Remove(const std::string& name) const;

 private:
  std::string Incoming(const std::string& name) const { return incoming_ + "/" + name; }
  std::string Settled(const std::string& name) const { return settled_ + "/" + name; }

  std::string incoming_;
  std::string settled_;
};

}  // namespace emulator
