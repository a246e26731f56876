#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

#include "tools/debug/program.hpp"

namespace krel::Debug {

/// The intermediate code of a program with the assembly that became of it: a row for each line of
/// the one, and below it the lines of the other. The number of a row stands for its address.
class Listing {
public:
    struct Row {
        std::size_t irLine;
        std::string_view text;
        bool isAssembly;
    };

    /// The program must outlive the listing.
    explicit Listing(const Program& program);

    const std::vector<Row>& rows() const { return all; }
    /// The number of the row of a line of the intermediate code.
    std::size_t rowOf(std::size_t irLine) const { return firstRows[irLine]; }

private:
    std::vector<Row> all;
    std::vector<std::size_t> firstRows;
};

}  // namespace krel::Debug
