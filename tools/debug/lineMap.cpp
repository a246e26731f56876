// Source lines of intermediate code. Comes in: a compilation, with its tree and the origins of its
// instructions. Goes out: for each instruction the line that people see, and whether a step ends
// there.

#include "tools/debug/lineMap.hpp"

#include <algorithm>
#include <array>
#include <string_view>
#include <unordered_map>

#include "shared/ast/node.hpp"

namespace krel::Debug {

namespace {

bool isCompound(const Node& node) {
    return node.kindName() == NodeKind::IfStatement ||
           node.kindName() == NodeKind::WhileStatement ||
           node.kindName() == NodeKind::ForStatement || node.kindName() == NodeKind::Block;
}

/// Whether a child of a node, given by its index, is a part of its own.
bool standsForItself(const Node& parent, std::size_t index) {
    const Name kind = parent.kindName();
    const bool isHead = kind == NodeKind::IfStatement || kind == NodeKind::ElseIfClause ||
                        kind == NodeKind::WhileStatement;
    return kind == NodeKind::StatementList || kind == NodeKind::ForInit ||
           kind == NodeKind::ForCondition || kind == NodeKind::ForUpdate || (isHead && index == 0);
}

bool contains(SourceRange outer, SourceRange inner) {
    return outer.begin <= inner.begin && inner.end <= outer.end;
}

}  // namespace

/// All parts of a program. They lie side by side or in one another.
class LineMap::Parts {
public:
    struct Part {
        SourceRange range;
        bool isCompound;
        const Part* parent;
    };

    explicit Parts(const Node& root) {
        collect(root);
        std::ranges::stable_sort(parts, [](const Part& left, const Part& right) {
            return left.range.begin != right.range.begin ? left.range.begin < right.range.begin
                                                         : left.range.end > right.range.end;
        });
        const Part* open = nullptr;
        for (Part& part : parts) {
            while (open != nullptr && !contains(open->range, part.range)) {
                open = open->parent;
            }
            part.parent = open;
            open = &part;
        }
    }

    /// The innermost part that a range lies in; null when there is none.
    const Part* around(SourceRange range) const {
        const auto behind = std::ranges::upper_bound(
            parts, range.begin, {}, [](const Part& part) { return part.range.begin; });
        const Part* part = behind == parts.begin() ? nullptr : &*std::prev(behind);
        while (part != nullptr && !contains(part->range, range)) {
            part = part->parent;
        }
        return part;
    }

private:
    /// Works from a list: a tree may be very deep.
    void collect(const Node& root) {
        std::vector<const Node*> waiting = {&root};
        while (!waiting.empty()) {
            const Node& node = *waiting.back();
            waiting.pop_back();
            for (std::size_t index = 0; index < node.getChildren().size(); ++index) {
                const Node& child = *node.getChildren()[index];
                if (standsForItself(node, index) && child.getRange().begin < child.getRange().end) {
                    parts.push_back({child.getRange(), isCompound(child), nullptr});
                }
                waiting.push_back(&child);
            }
        }
    }

    std::vector<Part> parts;
};

LineMap::LineMap(const FrontEnd::Compilation& compilation) : lines(compilation.irLines().size()) {
    locate(compilation);
    findBeginnings(compilation);
    listPlaces(compilation);
}

/// Finds the part of each line. What lies in none is a parameter or the end of a function.
void LineMap::locate(const FrontEnd::Compilation& compilation) {
    const Parts parts{*compilation.tree()};
    const auto& functions = compilation.ir().getFunctions();
    for (std::size_t number = 0; number < lines.size(); ++number) {
        const FrontEnd::IRLine& origin = compilation.irLines()[number];
        const std::string_view text =
            functions[origin.function].getBlocks()[origin.block].getInstructions().text(
                origin.instruction);
        Line& line = lines[number];
        line.part = origin.source;
        line.isParameter = text.starts_with("param ");
        if (const Parts::Part* const part = parts.around(origin.source)) {
            line.part = part->range;
            line.isInvisible = part->isCompound && text.starts_with("goto ");
        } else if (!line.isParameter && origin.source.begin < origin.source.end) {
            line.part.begin = origin.source.end - 1;
        }
        line.line = compilation.lines().positionOf(line.part.begin).line;
    }
}

void LineMap::findBeginnings(const FrontEnd::Compilation& compilation) {
    std::size_t firstLine = 0;
    for (const IRFunction& function : compilation.ir().getFunctions()) {
        findBeginningsOf(function, firstLine);
        for (const IRBasicBlock& block : function.getBlocks()) {
            firstLine += block.getInstructions().size();
        }
    }
}

/// A line begins where the line before it, on some way, is of another line of the source. Ways lead
/// through invisible jumps as if these were not there.
void LineMap::findBeginningsOf(const IRFunction& function, std::size_t firstLine) {
    struct Block {
        std::size_t begin;
        std::size_t end;
        std::vector<std::size_t> from;  // the numbers of the blocks before it
    };
    std::vector<Block> blocks;
    std::unordered_map<int, std::size_t> indexes;
    for (const IRBasicBlock& block : function.getBlocks()) {
        indexes.emplace(block.getNumber(), blocks.size());
        const std::size_t begin = blocks.empty() ? firstLine : blocks.back().end;
        blocks.push_back({begin, begin + block.getInstructions().size(), {}});
    }
    for (std::size_t index = 0; index < blocks.size(); ++index) {
        for (const int next : function.getBlocks()[index].getSuccessors()) {
            if (const auto found = indexes.find(next); found != indexes.end()) {
                blocks[found->second].from.push_back(index);
            }
        }
    }
    // A block that is nothing but an invisible jump leads to one other block alone. So each is
    // looked at once, but for those that lead around in a circle, hence the marks.
    std::vector<std::size_t> seenFor(blocks.size(), blocks.size());
    const auto comesFromElsewhere = [&](std::size_t index) {
        const int line = lines[blocks[index].begin].line;
        std::vector<std::size_t> waiting = {index};
        bool isReached = false;
        while (!waiting.empty()) {
            const std::size_t at = waiting.back();
            waiting.pop_back();
            for (const std::size_t from : blocks[at].from) {
                const Block& block = blocks[from];
                std::size_t last = block.end;
                while (last > block.begin && lines[last - 1].isInvisible) {
                    --last;
                }
                if (last == block.begin) {
                    if (seenFor[from] != index) {
                        seenFor[from] = index;
                        waiting.push_back(from);
                    }
                    continue;
                }
                isReached = true;
                if (lines[last - 1].line != line || lines[last - 1].isParameter) {
                    return true;
                }
            }
        }
        return !isReached;
    };
    for (std::size_t index = 0; index < blocks.size(); ++index) {
        for (std::size_t at = blocks[index].begin; at < blocks[index].end; ++at) {
            Line& line = lines[at];
            const bool isFirst = at == blocks[index].begin;
            const bool comes = at == firstLine             ? true
                               : isFirst                   ? comesFromElsewhere(index)
                               : lines[at - 1].isParameter ? true
                                                           : lines[at - 1].line != line.line;
            line.begins = comes && !line.isParameter && !line.isInvisible;
        }
    }
}

void LineMap::listPlaces(const FrontEnd::Compilation& compilation) {
    for (std::size_t number = 0; number < lines.size(); ++number) {
        if (lines[number].begins) {
            places.push_back({lines[number].line, compilation.irLines()[number].function, number});
        }
    }
    std::ranges::stable_sort(places, {}, &Place::line);
}

std::size_t LineMap::bodyFrom(std::size_t firstLine) const {
    while (lines[firstLine].isParameter) {
        ++firstLine;
    }
    return firstLine;
}

int LineMap::lineWithCodeFrom(int line) const {
    const auto found = std::ranges::lower_bound(places, line, {}, &Place::line);
    return found == places.end() ? 0 : found->line;
}

std::vector<std::size_t> LineMap::placesOf(int line) const {
    std::vector<std::size_t> found;
    const Place* last = nullptr;
    auto place = std::ranges::lower_bound(places, line, {}, &Place::line);
    for (; place != places.end() && place->line == line; ++place) {
        if (last == nullptr || last->function != place->function) {
            found.push_back(place->irLine);
        }
        last = &*place;
    }
    return found;
}

}  // namespace krel::Debug
