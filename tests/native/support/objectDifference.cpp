// The difference of two objects. Comes in: an object that our assembler has made, and one that was
// read from a file. Goes out: what is different.

#include "tests/native/support/objectDifference.hpp"

#include <algorithm>
#include <sstream>
#include <vector>

namespace krel::Native {

namespace {

std::string nameOf(const ObjectFile& object, const Symbol& symbol) {
    if (!symbol.name.empty() || !symbol.isDefined()) {
        return std::string{symbol.name};
    }
    return "[" + std::string{object.sections[symbol.section].name} + "]";
}

const Section* sectionOf(const ObjectFile& object, std::string_view name) {
    const auto found = std::find_if(object.sections.begin(), object.sections.end(),
                                    [&](const Section& section) { return section.name == name; });
    return found == object.sections.end() ? nullptr : &*found;
}

std::string lineOf(const ObjectFile& object, const Symbol& symbol) {
    std::ostringstream line;
    line << "symbol " << symbol.name << (symbol.isGlobal ? " global" : " local") << " type "
         << unsigned{symbol.type} << " in "
         << (symbol.isDefined() ? object.sections[symbol.section].name : "nothing") << " at "
         << symbol.value << " size " << symbol.size;
    return line.str();
}

std::string lineOf(const ObjectFile& object, const Section& section, const Relocation& relocation) {
    std::ostringstream line;
    line << "relocation of " << section.name << " at " << relocation.offset << " type "
         << relocation.type << " to " << nameOf(object, object.symbols[relocation.symbol]) << " + "
         << relocation.addend;
    return line.str();
}

std::string lineOf(const Section& section) {
    std::ostringstream line;
    line << "section " << section.name << " type " << section.type << " flags " << section.flags
         << " alignment " << section.alignment << " size " << section.size;
    return line.str();
}

std::vector<std::string> linesOf(const ObjectFile& object) {
    std::vector<std::string> lines;
    for (const Section& section : object.sections) {
        if (section.size != 0) {
            lines.push_back(lineOf(section));
        }
    }
    for (const bool isGlobal : {false, true}) {
        for (const Symbol& symbol : object.symbols) {
            if (!symbol.name.empty() && symbol.isGlobal == isGlobal) {
                lines.push_back(lineOf(object, symbol));
            }
        }
    }
    for (const Section& section : object.sections) {
        for (const Relocation& relocation : section.relocations) {
            lines.push_back(lineOf(object, section, relocation));
        }
    }
    return lines;
}

/// The first line in which two lists differ.
std::string firstDifference(const std::vector<std::string>& ours,
                            const std::vector<std::string>& theirs) {
    for (std::size_t number = 0; number < std::max(ours.size(), theirs.size()); ++number) {
        const std::string our = number < ours.size() ? ours[number] : "nothing";
        const std::string their = number < theirs.size() ? theirs[number] : "nothing";
        if (our != their) {
            return "ours:   " + our + "\ntheirs: " + their + "\n";
        }
    }
    return "";
}

std::string hexadecimal(const Bytes& bytes, std::size_t from) {
    constexpr std::size_t shown = 16;
    std::ostringstream text;
    text << std::hex;
    for (std::size_t at = from; at < std::min(bytes.size(), from + shown); ++at) {
        text << ' ' << unsigned{bytes[at]};
    }
    return text.str();
}

std::string firstDifference(std::string_view name, const Bytes& ours, const Bytes& theirs) {
    const auto [our, their] = std::mismatch(ours.begin(), ours.end(), theirs.begin(), theirs.end());
    if (our == ours.end() && their == theirs.end()) {
        return "";
    }
    const auto at = static_cast<std::size_t>(our - ours.begin());
    std::ostringstream text;
    text << name << " from offset " << at << "\nours:  " << hexadecimal(ours, at)
         << "\ntheirs:" << hexadecimal(theirs, at) << "\n";
    return text.str();
}

}  // namespace

std::string described(const ObjectFile& object) {
    std::string text;
    for (const std::string& line : linesOf(object)) {
        text += line + "\n";
    }
    return text;
}

std::string difference(const ObjectFile& ours, const ObjectFile& theirs) {
    std::string text;
    for (const Section& section : ours.sections) {
        const Section* const other = sectionOf(theirs, section.name);
        text += firstDifference(section.name, section.bytes, other ? other->bytes : Bytes{});
    }
    return text + firstDifference(linesOf(ours), linesOf(theirs));
}

}  // namespace krel::Native
