#pragma once

#include <array>
#include <string_view>

/// The registers that arguments are passed in, by class and in order.
inline constexpr std::array<std::string_view, 6> integerRegisters = {"%rdi", "%rsi", "%rdx",
                                                                     "%rcx", "%r8",  "%r9"};
inline constexpr std::array<std::string_view, 8> doubleRegisters = {
    "%xmm0", "%xmm1", "%xmm2", "%xmm3", "%xmm4", "%xmm5", "%xmm6", "%xmm7"};
