#pragma once

#include <cstddef>
#include <utility>
#include <vector>

#include "frontend/frontEnd.hpp"

namespace krel::Debug {

/// Which lines of the source belong to which lines of the intermediate code. What people step over
/// are the parts of a program that stand for themselves: simple statements, conditions, the parts
/// of a `for` header. Each belongs to the line where it begins, however many lines it takes; the
/// end of a function belongs to its closing brace.
class LineMap {
public:
    /// The compilation must be complete and have its sources recorded. It is not kept.
    explicit LineMap(const FrontEnd::Compilation& compilation);

    /// The part of the source that a line of the intermediate code belongs to, and its line.
    SourceRange partOf(std::size_t irLine) const { return lines[irLine].part; }
    int lineOf(std::size_t irLine) const { return lines[irLine].line; }
    /// Whether control comes here from another line of the source: where a step ends.
    bool begins(std::size_t irLine) const { return lines[irLine].begins; }
    /// Where the body of a function begins, behind its parameters. `firstLine` is the function's
    /// first line of the intermediate code.
    std::size_t bodyFrom(std::size_t firstLine) const;

    /// The first line of the source with code, from this one on; 0 when there is none.
    int lineWithCodeFrom(int line) const;
    /// Where a breakpoint on a line of the source stops: the first place in each of its functions.
    std::vector<std::size_t> placesOf(int line) const;

private:
    class Parts;

    struct Line {
        SourceRange part;
        int line = 1;
        bool begins = false;
        bool isParameter = false;
        bool isInvisible = false;  // a jump that nobody has written
    };

    struct Place {
        int line;
        std::size_t function;
        std::size_t irLine;
    };

    void locate(const FrontEnd::Compilation& compilation);
    void findBeginnings(const FrontEnd::Compilation& compilation);
    void findBeginningsOf(const IRFunction& function, std::size_t firstLine);
    void listPlaces(const FrontEnd::Compilation& compilation);

    std::vector<Line> lines;
    std::vector<Place> places;  // in the order of their lines
};

}  // namespace krel::Debug
