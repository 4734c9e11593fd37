#pragma once

#include <string>

namespace emulator {

/// A loaded library file; closed with the object.
class SharedObject {
 public:
  /// @param path  in UTF-8; taken as it is, not searched for
  /// @throws std::runtime_error  with the system's reason
  explicit SharedObject(const std::string& path);
  ~SharedObject();
  SharedObject(const SharedObject&) = delete;
  SharedObject& operator=(const SharedObject&) = delete;

  /// An exported function; null when there is none of that name.
  using Function = void (*)();
  Function Find(const char* name) const;

 private:
  void* handle_;
};

}  // namespace emulator
