// Comes in: lines with their comments. Goes out: the text. Comments behind code share a column with
// those of their section: lines of one block that follow each other, up to an empty line or a
// comment alone on its line.
#include "tools/format/writer.hpp"

#include <algorithm>
#include <iterator>

#include "tools/format/columns.hpp"

namespace krel {

namespace Format {

namespace {

using Iterator = std::vector<Line>::const_iterator;

bool isCommentAlone(const Line& line) {
    return line.comment != nullptr && line.width == line.indentation;
}

bool startsSection(const Line& line, const Line& before) {
    return line.blankBefore || line.depth != before.depth ||
           (isCommentAlone(line) && !line.continues);
}

/// Where the comment of a line would stand if it were the only one of its section.
std::size_t ownColumnOf(const Line& line) {
    return isCommentAlone(line) ? line.indentation : line.width + indentationStep;
}

class Writer {
public:
    Writer(std::string_view itsSource, const Lines& itsLines) : source(itsSource), all(itsLines) {
        out.reserve(source.size() + source.size() / 8);
        const Iterator end = all.lines.end();
        for (Iterator begin = all.lines.begin(); begin != end;) {
            Iterator next = std::next(begin);
            while (next != end && !startsSection(*next, *std::prev(next))) {
                ++next;
            }
            writeSection(begin, next);
            begin = next;
        }
    }

    std::string take() { return std::move(out); }

private:
    void writeSection(Iterator begin, Iterator end) {
        std::size_t shared = 0;
        for (Iterator line = begin; line != end; ++line) {
            const std::size_t own = ownColumnOf(*line);
            if (line->comment != nullptr && !isCommentAlone(*line) && own <= mostColumns) {
                shared = std::max(shared, own);
            }
        }
        for (Iterator line = begin; line != end; ++line) {
            const bool follows = !isCommentAlone(*line) || line->continues;
            const std::size_t own = ownColumnOf(*line);
            writeLine(*line, follows ? std::max(own, shared) : own);
        }
    }

    void writeLine(const Line& line, std::size_t commentColumn) {
        out.append(line.blankBefore ? 1 : 0, '\n');
        if (isCommentAlone(line)) {
            out.append(commentColumn, ' ');
        } else {
            out.append(line.indentation, ' ');
            out.append(all.code, written, line.codeEnd - written);
            out.append(line.comment == nullptr ? 0 : commentColumn - line.width, ' ');
        }
        if (line.comment != nullptr) {
            writeComment(*line.comment, commentColumn);
        }
        out += '\n';
        written = line.codeEnd;
    }

    /// The lines of a comment behind its first move as far as the first has moved, but keep their
    /// places among each other.
    void writeComment(const FrontEnd::Token& comment, std::size_t column) {
        std::string_view rest =
            source.substr(comment.range.begin, comment.range.end - comment.range.begin);
        out += withoutEnd(takeLine(rest), blanks);
        if (rest.empty()) {
            return;
        }
        const std::size_t before = sourceColumnOf(comment, source);
        const std::size_t least = leastIndentation(rest);
        const std::size_t right = column > before ? std::min(column - before, mostColumns) : 0;
        const std::size_t left = column < before ? std::min(before - column, least) : 0;
        while (!rest.empty()) {
            out += '\n';
            const std::string_view line = withoutEnd(takeLine(rest), blanks);
            if (!line.empty()) {
                out.append(indentationOf(line) + right - left, ' ');
                out += line.substr(line.find_first_not_of(" \t"));
            }
        }
    }

    static std::size_t indentationOf(std::string_view line) {
        return columnBehind(line.substr(0, line.find_first_not_of(" \t")));
    }

    static std::size_t leastIndentation(std::string_view lines) {
        std::size_t least = mostColumns;
        while (!lines.empty()) {
            const std::string_view line = withoutEnd(takeLine(lines), blanks);
            if (!line.empty()) {
                least = std::min(least, indentationOf(line));
            }
        }
        return least;
    }

    std::string_view source;
    const Lines& all;
    std::size_t written = 0;  // of the code
    std::string out;
};

}  // namespace

std::string textOf(std::string_view source, const Lines& lines) {
    return Writer(source, lines).take();
}

}  // namespace Format

}  // namespace krel
