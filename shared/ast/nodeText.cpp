// The text renderings of a node: value and type names, the debugging print, the JSON document.
// Tools read the JSON document byte by byte, so its layout must not change.

#include <array>
#include <charconv>
#include <iostream>
#include <sstream>
#include <string_view>
#include <utility>
#include <vector>

#include "shared/ast/node.hpp"
#include "shared/ast/textRuns.hpp"
#include "shared/error/error.hpp"

namespace krel {

namespace {

/// Fifteen significant digits without trailing zeros, exponent form where it is shorter.
std::string doubleText(double value) {
    std::array<char, 32> digits{};
    const auto end =
        std::to_chars(digits.begin(), digits.end(), value, std::chars_format::general, 15);
    return {digits.begin(), end.ptr};
}

/// The escape of each byte that has one. Other control characters and bytes above 127 pass as they
/// are (kept: readers of the dumps rely on it).
constexpr std::string_view jsonEscape(char byte) {
    switch (byte) {
        case '"':
            return "\\\"";
        case '\\':
            return "\\\\";
        case '\n':
            return "\\n";
        case '\t':
            return "\\t";
        case '\r':
            return "\\r";
        case '\b':
            return "\\b";
        case '\f':
            return "\\f";
        case '\0':
            return "\\u0000";
        default:
            return {};
    }
}

constexpr std::array<bool, 256> jsonEscapes() {
    std::array<bool, 256> escapes{};
    for (int byte = 0; byte < 256; ++byte) {
        escapes[static_cast<std::size_t>(byte)] = !jsonEscape(static_cast<char>(byte)).empty();
    }
    return escapes;
}

bool hasJsonEscape(char byte) {
    static constexpr std::array<bool, 256> escapes = jsonEscapes();
    return escapes[static_cast<unsigned char>(byte)];
}

/// Kinds whose value is a name and is shown as one.
bool isNamed(Name kind) {
    static const NameTable<bool> named{{NodeKind::Declarator, true},
                                       {NodeKind::ArrayDeclarator, true},
                                       {NodeKind::FunctionDeclaration, true},
                                       {NodeKind::Identifier, true},
                                       {NodeKind::Parameter, true}};
    return named.find(kind);
}

/// Writes the JSON document of a tree to a stream. Keeps in memory only a block of text, and the
/// nodes from the root to the current one.
class JsonWriter {
public:
    explicit JsonWriter(std::ostream& stream) : out(stream) { text.reserve(blockSize); }
    JsonWriter(const JsonWriter&) = delete;
    JsonWriter& operator=(const JsonWriter&) = delete;
    ~JsonWriter() = default;

    /// Works from an explicit stack, for trees of any depth.
    void write(const Node& root, int level) {
        std::vector<Open> open;
        begin(root, level, open);
        while (!open.empty()) {
            Open& innermost = open.back();
            if (innermost.next == innermost.node->getChildren().size()) {
                end(innermost);
                open.pop_back();
                if (!open.empty()) {
                    const Open& parent = open.back();
                    put(parent.next < parent.node->getChildren().size() ? ",\n" : "\n");
                }
                continue;
            }
            const Node& child = *innermost.node->getChildren()[innermost.next++];
            begin(child, innermost.level + 2, open);
        }
        flush();
    }

private:
    /// A node whose closing brace is still to be written.
    struct Open {
        const Node* node;
        int level;
        std::size_t next;  // the child to write next
    };

    static constexpr std::size_t blockSize = std::size_t{1} << 16;

    void begin(const Node& node, int level, std::vector<Open>& open) {
        indent(level);
        put("{\n");
        key(level, "\"kind\": ");
        quoted(node.getKind());
        put(",\n");
        if (node.kindName() == NodeKind::Program) {
            key(level, "\"sourceFile\": ");
            quoted(Error::getSourceFile());
        } else {
            key(level, "\"sourceLine\": \"");
            number(node.getLine());
            put("\"");
        }
        if (node.hasValue()) {
            put(",\n");
            key(level, isNamed(node.kindName()) ? "\"name\": " : "\"value\": ");
            value(node);
        }
        if (node.hasSemanticType()) {
            put(",\n");
            key(level, "\"type\": ");
            quoted(node.getSemanticType());
        }
        if (node.hasChildren()) {
            put(",\n");
            key(level, "\"children\": [\n");
        }
        open.push_back({&node, level, 0});
    }

    void end(const Open& done) {
        if (done.node->hasChildren()) {
            key(done.level, "]");
        }
        put("\n");
        indent(done.level);
        put("}");
    }

    void value(const Node& node) {
        if (node.getValueType() == Node::ValueType::String) {
            quoted(node.getStringValue());
        } else if (node.getValueType() == Node::ValueType::Char) {
            quoted(node.valueAsString());
        } else {
            put(node.valueAsString());
        }
    }

    void number(int value) {
        std::array<char, 12> digits;  // of any int, with its sign
        const auto end = std::to_chars(digits.begin(), digits.end(), value).ptr;
        put({digits.begin(), end});
    }

    void indent(int level) {
        auto missing = static_cast<std::size_t>(level) * 2;
        while (missing > blockSize - text.size()) {
            const std::size_t room = blockSize - text.size();
            text.append(room, ' ');
            missing -= room;
            flush();
        }
        text.append(missing, ' ');
    }

    void key(int level, std::string_view name) {
        indent(level + 1);
        put(name);
    }

    void quoted(std::string_view raw) {
        put("\"");
        for (std::size_t at = 0; at < raw.size(); ++at) {
            const std::string_view plain = plainRun(raw, at, hasJsonEscape);
            put(plain);
            at += plain.size();
            if (at < raw.size()) {
                put(jsonEscape(raw[at]));
            }
        }
        put("\"");
    }

    void put(std::string_view part) {
        if (part.size() > blockSize - text.size()) {
            flush();
        }
        if (part.size() > blockSize) {
            out.write(part.data(), static_cast<std::streamsize>(part.size()));
        } else {
            text += part;
        }
    }

    void flush() {
        out.write(text.data(), static_cast<std::streamsize>(text.size()));
        text.clear();
    }

    std::ostream& out;
    std::string text;  // not yet handed on
};

/// The value fields as the description shows them, each behind `margin`.
void describeValues(std::ostream& out, const Node& node, std::string_view margin) {
    out << margin << "string value: " << node.getStringValue() << '\n'
        << margin << "integer value: " << node.getIntValue() << '\n'
        << margin << "double value: " << node.getDoubleValue() << '\n'
        << margin << "character value: " << node.getCharValue() << '\n'
        << margin << "boolean value: " << node.getBoolValue() << '\n';
}

}  // namespace

std::string Node::valueAsString() const {
    switch (valueType) {
        case ValueType::String:
            return getStringValue();
        case ValueType::Int:
            return std::to_string(value.integer);
        case ValueType::Double:
            return doubleText(getDoubleValue());
        case ValueType::Char:
            return std::string(1, value.character);
        case ValueType::Bool:
            return value.boolean ? "true" : "false";
        case ValueType::None:
            break;
    }
    return {};
}

std::string Node::typeAsString() const {
    static constexpr std::array<const char*, 6> names = {"",       "string",    "integer",
                                                         "double", "character", "boolean"};
    return names[static_cast<std::size_t>(valueType)];
}

std::string Node::description() const {
    std::ostringstream out;
    out << "kind: " << getKind() << '\n'
        << "type: " << typeAsString() << '\n'
        << "semantic type: " << getSemanticType() << '\n';
    describeValues(out, *this, "");
    out << "children:\n";
    constexpr std::string_view margin = "      ";
    for (std::size_t index = 0; index < children.size(); ++index) {
        out << "  child " << index << '\n'
            << margin << "kind: " << children[index]->getKind() << '\n';
        describeValues(out, *children[index], margin);
    }
    return std::move(out).str();
}

void Node::printNode() const {
    std::cout << description() << std::flush;
}

std::string Node::toJSON(int level) const {
    std::ostringstream out;
    JsonWriter{out}.write(*this, level);
    return std::move(out).str();
}

void Node::printJSON(std::ostream& out, int level) const {
    JsonWriter{out}.write(*this, level);
    out << std::endl;
}

void Node::printJSON() const {
    printJSON(std::cout, 0);
}

}  // namespace krel
