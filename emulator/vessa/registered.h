#pragma once

#include <cstdint>
#include <memory>
#include <utility>

#include "emulator/host.h"

namespace emulator::tool {

/// An object that the library can refer to for as long as this lives.
template <class Kind>
class Registered {
 public:
  Registered(Host& host, std::shared_ptr<Kind> object)
      : host_(host), object_(std::move(object)), oref_(host.Add(object_)) {}
  ~Registered() { host_.Remove(oref_); }
  Registered(const Registered&) = delete;
  Registered& operator=(const Registered&) = delete;

  std::uint32_t Oref() const { return oref_; }
  Kind* operator->() const { return object_.get(); }

 private:
  Host& host_;
  std::shared_ptr<Kind> object_;
  std::uint32_t oref_;
};

}  // namespace emulator::tool
