#pragma once

#include <stdexcept>

namespace krel::Native {

/// Something that this native build does not know exactly: an instruction, a relocation, a symbol
/// that nobody defines, a file that cannot be read. Nothing has been written when it is thrown. The
/// program then hands its work on to another native compiler; the text says why, for the case that
/// there is none.
class NotKnown : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

}  // namespace krel::Native
