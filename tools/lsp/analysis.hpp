#pragma once

#include <memory>
#include <string>

#include "tools/check/check.hpp"
#include "tools/check/model.hpp"
#include "tools/syntax/syntaxTree.hpp"

namespace krel::Lsp {

using Check::FunctionId;
using Check::noFunction;
using Syntax::Kind;
using Syntax::NodeId;
using Syntax::noNode;
using Syntax::Word;

/// What is known about a text. Each part is made when it is first asked for. The text must outlive
/// the object.
class Analysis {
public:
    explicit Analysis(const std::string& itsText) : source(itsText) {}

    const std::string& text() const { return source; }
    /// How the tolerant reading sees the text.
    const Syntax::Tree& tree();
    /// Who is who in it, and the types.
    const Check::Model& model();
    /// What `krel check` says of it. Throws what Check::check throws.
    const Check::Report& report();

private:
    const std::string& source;
    std::unique_ptr<Syntax::Tree> itsTree;
    std::unique_ptr<Check::Model> itsModel;
    std::unique_ptr<Check::Report> itsReport;
};

/// The number of the token that a byte lies in or right behind; of two, the one that is a name,
/// keyword or literal, else the later. The number of the end of the text when there is none.
std::uint32_t tokenAt(const Syntax::Tree& tree, std::uint32_t offset);

/// The node that a token is the name, literal or operator of; noNode when there is none.
NodeId nodeOfToken(const Syntax::Tree& tree, std::uint32_t token);

/// The innermost node that holds a range, an empty one also at its ends; of several, the first. The
/// root when no other does.
NodeId nodeAround(const Syntax::Tree& tree, SourceRange range);

/// Whether a byte lies within a comment or a text or character literal.
bool isInText(const Syntax::Tree& tree, std::uint32_t offset);

}  // namespace krel::Lsp
