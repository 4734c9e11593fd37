#pragma once

namespace emulator {

/// Anything that can be called with an `Argument&`; refers to it, and so must not outlive it.
template <class Argument>
class CallableRef {
 public:
  template <class Callable>
  explicit CallableRef(const Callable& callable)
      : callable_(&callable),
        call_([](const void* of, Argument& argument) { (*static_cast<const Callable*>(of))(argument); }) {}

  void operator()(Argument& argument) const { call_(callable_, argument); }

 private:
  const void* callable_;
  void (*call_)(const void*, Argument&);
};

}  // namespace emulator
