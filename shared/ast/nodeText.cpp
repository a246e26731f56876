// The text renderings of a node: value and type names, the debugging print, the JSON document.
// The JSON layout is what tools read, down to the byte: nothing here may change by itself.

#include <array>
#include <charconv>
#include <iostream>
#include <string_view>
#include <utility>
#include <vector>

#include "shared/ast/node.hpp"
#include "shared/error/error.hpp"

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

/// Writes the JSON document of a tree into a string and hands the string on to `out`, if there is
/// one, whenever it has grown to a block.
class JsonWriter {
public:
    explicit JsonWriter(std::ostream* stream) : out(stream) {}

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
                    text += parent.next < parent.node->getChildren().size() ? ",\n" : "\n";
                }
                flush(blockSize);
                continue;
            }
            const Node& child = *innermost.node->getChildren()[innermost.next++];
            begin(child, innermost.level + 2, open);
        }
        flush(0);
    }

    std::string take() { return std::move(text); }

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
        text += "{\n";
        key(level, "\"kind\": ");
        quoted(node.getKind());
        text += ",\n";
        if (node.kindName() == NodeKind::Program) {
            key(level, "\"sourceFile\": ");
            quoted(Error::getSourceFile());
        } else {
            key(level, "\"sourceLine\": \"");
            number(node.getLine());
            text += '"';
        }
        if (node.hasValue()) {
            text += ",\n";
            key(level, isNamed(node.kindName()) ? "\"name\": " : "\"value\": ");
            value(node);
        }
        if (node.hasSemanticType()) {
            text += ",\n";
            key(level, "\"type\": ");
            quoted(node.getSemanticType());
        }
        if (node.hasChildren()) {
            text += ",\n";
            key(level, "\"children\": [\n");
        }
        open.push_back({&node, level, 0});
    }

    void end(const Open& done) {
        if (done.node->hasChildren()) {
            key(done.level, "]");
        }
        text += '\n';
        indent(done.level);
        text += '}';
    }

    void value(const Node& node) {
        if (node.getValueType() == Node::ValueType::String) {
            quoted(node.getStringValue());
        } else if (node.getValueType() == Node::ValueType::Char) {
            quoted(node.valueAsString());
        } else {
            text += node.valueAsString();
        }
    }

    void number(int value) {
        std::array<char, 12> digits;  // of any int, with its sign
        const auto end = std::to_chars(digits.begin(), digits.end(), value).ptr;
        text += std::string_view{digits.begin(), end};
    }

    void indent(int level) { text.append(static_cast<std::size_t>(level) * 2, ' '); }

    void key(int level, std::string_view name) {
        indent(level + 1);
        text += name;
    }

    void quoted(std::string_view raw) {
        text += '"';
        std::size_t copied = 0;
        for (std::size_t at = 0; at < raw.size(); ++at) {
            if (hasJsonEscape(raw[at])) {
                text.append(raw, copied, at - copied).append(jsonEscape(raw[at]));
                copied = at + 1;
            }
        }
        text.append(raw, copied).append(1, '"');
    }

    void flush(std::size_t limit) {
        if (out != nullptr && text.size() > limit) {
            out->write(text.data(), static_cast<std::streamsize>(text.size()));
            text.clear();
        }
    }

    std::ostream* out;
    std::string text;
};

/// The value fields as the debugging print shows them, each behind `margin`.
void printValues(const Node& node, std::string_view margin) {
    std::cout << margin << "string value: " << node.getStringValue() << std::endl
              << margin << "integer value: " << node.getIntValue() << std::endl
              << margin << "double value: " << node.getDoubleValue() << std::endl
              << margin << "character value: " << node.getCharValue() << std::endl
              << margin << "boolean value: " << node.getBoolValue() << std::endl;
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

void Node::printNode() const {
    std::cout << "kind: " << getKind() << std::endl
              << "type: " << typeAsString() << std::endl
              << "semantic type: " << getSemanticType() << std::endl;
    printValues(*this, "");
    std::cout << "children:" << std::endl;
    constexpr std::string_view margin = "      ";
    for (std::size_t index = 0; index < children.size(); ++index) {
        std::cout << "  child " << index << std::endl
                  << margin << "kind: " << children[index]->getKind() << std::endl;
        printValues(*children[index], margin);
    }
}

std::string Node::toJSON(int level) const {
    JsonWriter writer{nullptr};
    writer.write(*this, level);
    return writer.take();
}

void Node::printJSON(std::ostream& out, int level) const {
    JsonWriter{&out}.write(*this, level);
    out << std::endl;
}

void Node::printJSON() const {
    printJSON(std::cout, 0);
}
