#pragma once

#include <cstddef>
#include <cstdint>
#include <iosfwd>
#include <string>

#include "shared/ast/name.hpp"
#include "shared/ast/nodeKinds.hpp"
#include "shared/ast/nodeList.hpp"
#include "shared/error/place.hpp"

namespace krel {

/// The one class of the syntax tree: a kind, at most one value, a semantic type once analysis has
/// found it, a line, and owned children. Its kind tells what it stands for (nodeKinds.hpp). A node
/// owns its children; what removeChild and replaceChild detach belongs to the caller.
class Node {
public:
    /// Which value a node carries.
    enum class ValueType : std::uint8_t {
        None = 0,
        String = 1,
        Int = 2,
        Double = 3,
        Char = 4,
        Bool = 5
    };

    Node(Name itsKind, Place place);
    Node(Name itsKind, Name value, Place place);
    /// A null `value` gives an empty string value.
    Node(Name itsKind, const char* value, Place place);
    Node(Name itsKind, int value, Place place);
    Node(Name itsKind, double value, Place place);
    Node(Name itsKind, char value, Place place);
    Node(Name itsKind, bool value, Place place);
    /// The node takes ownership of the children; null ones are dropped, here and below.
    Node(Name itsKind, Node* child, Place place);
    Node(Name itsKind, std::nullptr_t, Place place) : Node(itsKind, place) {}
    Node(Name itsKind, Name value, Node* child, Place place);
    Node(Name itsKind, Node* first, Node* second, Place place);
    Node(Name itsKind, Node* first, Node* second, Node* third, Place place);
    Node(const Node&) = delete;
    Node& operator=(const Node&) = delete;
    /// Deletes all descendants, however deep the tree is.
    ~Node();

    /// A node with the same kind, value, type and place, in the memory in use. The caller owns it.
    Node* copyWithoutChildren() const;

    /// Nodes lie in the memory in use (treeMemory.hpp). Throws std::bad_alloc.
    static void* operator new(std::size_t size);
    static void operator delete(void* node);

    /// Appends `child`, taking ownership, unless it is null. Returns this node, so calls chain.
    Node* addChild(Node* child);
    /// Detaches entry `index` without deleting it. Does nothing when there is no such entry.
    void removeChild(std::size_t index);
    /// Puts `newChild` at `index` and returns the old child, which the caller now owns. Null, and
    /// no change, when there is no such entry or `newChild` is null.
    Node* replaceChild(std::size_t index, Node* newChild);

    bool hasValue() const { return valueType != ValueType::None; }
    bool hasChildren() const { return !children.empty(); }
    bool hasSemanticType() const { return semanticType != 0; }
    void setSemanticType(Name type) { semanticType = wordOf(type) & lastWord; }
    /// Turns the node into another kind in place.
    void setKind(Name newKind) { kind = wordOf(newKind); }

    const std::string& getKind() const { return kindName().text(); }
    const std::string& getStringValue() const { return stringValue().text(); }
    const std::string& getSemanticType() const { return semanticTypeName().text(); }
    const NodeList& getChildren() const { return children; }
    ValueType getValueType() const { return valueType; }
    /// A value of another type than the one that the node carries is zero.
    int getIntValue() const { return valueType == ValueType::Int ? value.integer : 0; }
    double getDoubleValue() const;
    char getCharValue() const { return valueType == ValueType::Char ? value.character : '\0'; }
    bool getBoolValue() const { return valueType == ValueType::Bool && value.boolean; }
    int getLine() const { return line; }
    /// The bytes of the source that the node stands for, from its first token to its last one;
    /// empty when they are not known, and for nodes that stand for nothing written.
    SourceRange getRange() const { return range; }
    Place getPlace() const { return {line, range}; }
    /// Sets the range of a node without children to these bytes. Extends the range of a node with
    /// children up to their end.
    void extendOver(SourceRange bytes) {
        range = {hasChildren() ? range.begin : bytes.begin, bytes.end};
    }

    /// The same texts as names, for passes that compare and look up by them.
    Name kindName() const { return nameOf(kind); }
    Name stringValue() const { return valueType == ValueType::String ? value.string : Name{}; }
    Name semanticTypeName() const { return nameOf(semanticType); }

    /// The value as the intermediate representation spells it; empty without a value.
    std::string valueAsString() const;
    /// The name of the value's type, for display; empty without a value.
    std::string typeAsString() const;
    /// All fields of the node and of its children, one a line, for debugging.
    std::string description() const;
    /// Writes the description to standard output.
    void printNode() const;
    /// The JSON document of the subtree, without a line feed at its end. `level` counts indents of
    /// two spaces.
    std::string toJSON(int level) const;
    /// Writes toJSON(level) and a line feed. Failures stay in the stream's state.
    void printJSON(std::ostream& out, int level) const;
    /// The same on standard output, at level 0.
    void printJSON() const;

private:
    union Value {
        Name string{};
        int integer;
        std::uint32_t real;  // the place of a double (TreeMemory::keep)
        char character;
        bool boolean;
    };

    /// Kinds and types are kept as numbers of 13 bits, their words. The compiler's own names for
    /// them exist from the start, and their words are their indexes. Any other name gets the next
    /// of the other words when it first becomes a kind or type. Throws std::length_error when there
    /// are no more.
    static std::uint16_t wordOf(Name name) {
        return name.index() < firstOtherWord ? static_cast<std::uint16_t>(name.index())
                                             : otherWordOf(name);
    }
    static Name nameOf(std::uint16_t word) {
        return word < firstOtherWord ? Name::fromIndex(word) : otherName(word);
    }
    static std::uint16_t otherWordOf(Name name);
    static Name otherName(std::uint16_t word);
    static constexpr std::uint16_t firstOtherWord = 0x1000;
    static constexpr std::uint16_t lastWord = 0x1FFF;

    Node(Name itsKind, ValueType itsValueType, Value itsValue, Place place);

    friend class TreeMemory;

    /// A node takes 40 bytes: the tree is most of what the compiler keeps in memory.
    [[no_unique_address]] NodeList children;
    Value value;
    int line;
    SourceRange range;
    std::uint16_t kind;               // its word
    std::uint16_t semanticType : 13;  // its word
    ValueType valueType : 3;
};

static_assert(sizeof(void*) != 8 || sizeof(Node) == 40);

}  // namespace krel

// The interfaces of the passes are known without the namespace, too.
using krel::Node;
