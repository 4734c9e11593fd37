#pragma once

#include <functional>

/// Runs the action on a thread whose stack has 256 KiB, where the system lets a test choose that; otherwise
/// on the caller's.
void RunOnSmallStack(const std::function<void()>& action);
