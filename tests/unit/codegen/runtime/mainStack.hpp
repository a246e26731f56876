#pragma once

#include <unistd.h>

#include <cstddef>
#include <cstdint>

/// The address above all frames of the main thread's stack: the environment stands right there when
/// a process begins.
inline const std::uintptr_t endOfMainStack = reinterpret_cast<std::uintptr_t>(environ);

/// A heap never gives its addresses back, so all the heaps of a process have to get along with
/// them: 8 GB for each.
inline constexpr std::size_t blocksForATest = std::size_t{1} << 17;
