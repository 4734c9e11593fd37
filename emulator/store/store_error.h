#pragma once

#include <stdexcept>

namespace emulator {

/// A store cannot do what it was asked; the text says which store and why.
class StoreError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

}  // namespace emulator
