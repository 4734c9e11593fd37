#pragma once

/// Whether the compiler's runtime can throw when no memory at all is left. Its reserve for exceptions is guarded by a
/// lock, which some systems allocate when it is first taken; there the runtime ends the process.
bool ThrowsWithoutAnyMemory();
