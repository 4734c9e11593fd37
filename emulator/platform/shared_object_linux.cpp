#include <dlfcn.h>

#include <stdexcept>

#include "emulator/platform/shared_object.h"

namespace emulator {

SharedObject::SharedObject(const std::string& path) {
  // A path without a slash would be searched for in the system's folders.
  const std::string taken_as_is = path.find('/') == std::string::npos ? "./" + path : path;
  handle_ = dlopen(taken_as_is.c_str(), RTLD_NOW | RTLD_LOCAL);
  if (handle_ != nullptr) return;
  const char* const reason = dlerror();  // NOLINT(concurrency-mt-unsafe)  the text is this thread's own
  throw std::runtime_error("cannot load the library " + path + ": " + reason);
}

SharedObject::~SharedObject() { dlclose(handle_); }

SharedObject::Function SharedObject::Find(const char* name) const {
  return reinterpret_cast<Function>(dlsym(handle_, name));
}

}  // namespace emulator
