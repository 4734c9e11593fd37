#pragma once

namespace emulator {

/// What a transaction is for.
enum class Access { kRead, kWrite };

}  // namespace emulator
