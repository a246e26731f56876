#pragma once

#include <array>

#include "codegen/shortText.hpp"

namespace krel {

/// The registers that the generated code uses.
namespace Register {

inline constexpr ShortText rax{"%rax"};
inline constexpr ShortText rcx{"%rcx"};
inline constexpr ShortText rdx{"%rdx"};
inline constexpr ShortText rdi{"%rdi"};
inline constexpr ShortText rsi{"%rsi"};
inline constexpr ShortText r8{"%r8"};
inline constexpr ShortText r9{"%r9"};
inline constexpr ShortText r11{"%r11"};
inline constexpr ShortText xmm0{"%xmm0"};
inline constexpr ShortText xmm1{"%xmm1"};

}  // namespace Register

/// The registers that arguments are passed in, by class and in order.
inline constexpr std::array<ShortText, 6> integerRegisters = {
    Register::rdi, Register::rsi, Register::rdx, Register::rcx, Register::r8, Register::r9};
inline constexpr std::array<ShortText, 8> doubleRegisters = {
    Register::xmm0,     Register::xmm1,     ShortText{"%xmm2"}, ShortText{"%xmm3"},
    ShortText{"%xmm4"}, ShortText{"%xmm5"}, ShortText{"%xmm6"}, ShortText{"%xmm7"}};

}  // namespace krel
