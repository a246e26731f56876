#pragma once

#include <unistd.h>

#include <cstdint>

/// The address above all frames of the main thread's stack: the environment stands right there when
/// a process begins.
inline const std::uintptr_t endOfMainStack = reinterpret_cast<std::uintptr_t>(environ);
