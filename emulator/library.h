#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "emulator/list.h"
#include "host/binary_interface.h"

namespace emulator {

class CallWatcher;
struct CallOut;
class SharedObject;

/// What a call-out with a value list in its buffer answered.
struct ListResult {
  std::int32_t returned = 0;      ///< what the function itself returned
  std::int64_t status = 0;        ///< first item of the result list: 0 success, 1 failure
  std::u16string message;         ///< of a failure
  std::vector<ListValue> values;  ///< the items behind the status; those of a failure, too

  bool Succeeded() const { return returned == 0 && status == 0; }
};

/// A call-out library in use: loaded, and given the host's callback table. Calls run against the current
/// Host, one at a time in this process: those of other threads wait, those from inside an event do not.
class Library {
 public:
  /// @param path  in UTF-8
  /// @throws std::runtime_error  the file cannot be loaded, has no GetZFTable or hands out no table; the text
  /// names
  ///                             the file and the system's reason
  static Library Load(const std::string& path);
  /// The same, with the callback table of another host.
  static Library Load(const std::string& path, const vessa::HostServices* callbacks);
  /// A library that is part of this program.
  static Library Linked(vessa::GetZFTableFunction* get_table);

  Library(const Library&) = delete;
  Library& operator=(const Library&) = delete;
  Library(Library&&) noexcept;
  Library& operator=(Library&&) noexcept;
  ~Library();

  /// From now on `watcher` is told of every call; null for nobody. It lives as long as calls are made.
  void Watch(CallWatcher* watcher) { watcher_ = watcher; }

  /// Row 0 of the call-out table; a row of nulls ends it.
  const vessa::CallOutRow* Table() const { return table_; }
  /// The row of that name; null when there is none.
  const vessa::CallOutRow* Find(std::string_view name) const;

  // A name that the table does not hold, or whose argument types are others, throws std::invalid_argument.

  std::int32_t Call(std::string_view name, vessa::HostString& buffer) const;                      // "Bz", "B"
  std::int32_t Call(std::string_view name, vessa::HostString& buffer, std::int32_t value) const;  // "Bi"
  std::int32_t Call(std::string_view name, std::int32_t first, std::int32_t second,
                    std::int32_t third) const;     // "ioo"
  std::int32_t Call(std::string_view name) const;  // "coi"

  /// Puts the list into a buffer, calls the "Bz" function and reads the list that it left there.
  /// @throws std::length_error      more than 32767 bytes of arguments
  /// @throws std::invalid_argument  the answer is no result list
  ListResult CallList(std::string_view name, const ListBuilder& arguments) const;

 private:
  Library(std::unique_ptr<SharedObject> object, const vessa::CallOutRow* table);
  const vessa::CallOutRow& Row(std::string_view name, std::string_view types) const;
  template <class Entry>
  std::int32_t Make(const CallOut& call, const Entry& entry) const;

  std::unique_ptr<SharedObject> object_;
  const vessa::CallOutRow* table_ = nullptr;
  CallWatcher* watcher_ = nullptr;
};

/// Puts bytes into a buffer. @throws std::length_error  more than 32767 bytes
void Fill(vessa::HostString& buffer, std::string_view bytes);

/// The bytes in a buffer. @throws std::invalid_argument  a count above 32767
std::string_view Contents(const vessa::HostString& buffer);

}  // namespace emulator
