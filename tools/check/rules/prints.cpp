// What other languages print with. Comes in: calls and chains. Goes out: `print`.

/// # foreign-print
///
/// ## What it finds
///
/// `printf`, `println`, `puts`, `console.log`, `System.out.println`, `cout <<`.
///
/// ## Why
///
/// `print` writes its arguments one after the other, without blanks and line ends. There are no
/// formats: widths and numbers of decimals are left out by the repair.
///
/// ## Example
///
/// ```krel example fragment
/// printf("i = %d\n", i);
/// ```
///
/// ## Use instead
///
/// ```krel fragment
/// print("i = ", i, "\n");
/// ```

#include <algorithm>
#include <array>
#include <string>
#include <utility>

#include "tools/check/repairer.hpp"

namespace krel::Check {

namespace {

enum class Style : std::uint8_t { Format, Plain, Blanks };

struct Printer {
    std::string_view name;  // as it is written, with all before it
    Style style;
    bool endsLine;
};

constexpr std::array printers = {
    Printer{"printf", Style::Format, false},
    Printer{"std::printf", Style::Format, false},
    Printer{"System.out.printf", Style::Format, false},
    Printer{"fmt.Printf", Style::Format, false},
    Printer{"println", Style::Plain, true},
    Printer{"print_line", Style::Plain, true},
    Printer{"puts", Style::Plain, true},
    Printer{"writeln", Style::Plain, true},
    Printer{"write", Style::Plain, false},
    Printer{"putchar", Style::Plain, false},
    Printer{"putStrLn", Style::Plain, true},
    Printer{"fmt.Println", Style::Blanks, true},
    Printer{"fmt.Print", Style::Plain, false},
    Printer{"console.log", Style::Blanks, true},
    Printer{"System.out.println", Style::Plain, true},
    Printer{"System.out.print", Style::Plain, false},
    Printer{"Console.WriteLine", Style::Plain, true},
    Printer{"Console.Write", Style::Plain, false},
    Printer{"std::println", Style::Plain, true},
};

/// Where a `%` and what belongs to it end; the same place if it is a plain sign.
std::size_t endOfSpecifier(std::string_view text, std::size_t at) {
    const std::size_t letter = text.find_first_not_of("-+ #0123456789.*lhzjtL", at + 1);
    constexpr std::string_view letters = "diufFeEgGcsxXobp";
    const bool isOne = letter != text.npos && letters.find(text[letter]) != letters.npos;
    return isOne ? letter + 1 : at;
}

bool isEndOfLine(std::string_view text) {
    return text == "endl" || text == "std::endl";
}

}  // namespace

/// Whether a statement prints in another language. Writes it as `print` and returns true if so.
bool Repairer::foreignPrint(NodeId id, Pieces& out) {
    if (tree[id].kind == Kind::Binary && tree[id].op == Word::ShiftLeft) {
        return streamPrint(id, out);
    }
    const bool isMethod = tree[id].kind == Kind::Method;
    const bool isCall = tree[id].kind == Kind::Call && tree[id].op == Word::Name &&
                        model.functionNamed(tree.wordOf(id)) == noFunction;
    if (!isMethod && !isCall) {
        return false;
    }
    const SourceRange name = {tree[id].range.begin, tree.wordRange(id).end};
    const auto* const printer =
        std::find_if(printers.begin(), printers.end(),
                     [&](const Printer& each) { return each.name == tree.textOf(name); });
    if (printer == printers.end()) {
        return false;
    }
    std::vector<NodeId> arguments = tree.children(id);
    arguments.erase(arguments.begin(), arguments.begin() + (isMethod ? 1 : 0));
    Pieces all;
    if (printer->style == Style::Format && !arguments.empty() &&
        tree[arguments.front()].op == Word::StringLiteral) {
        formatted(arguments, all);
    } else {
        for (const NodeId argument : arguments) {
            const bool isFirst = argument == arguments.front();
            separate(all, name);
            if (printer->style == Style::Blanks && !isFirst) {
                all.insert("\" \", ", tree[argument].range);
            }
            printed(argument, all);
        }
    }
    if (printer->endsLine) {
        separate(all, name);
        all.insert("\"\\n\"", name);
    }
    finishPrint(name, std::move(all), out);
    return true;
}

void Repairer::finishPrint(SourceRange name, Pieces&& arguments, Pieces& out) {
    if (arguments.empty()) {
        arguments.insert("\"\"", name);
    }
    const std::string text = "print(" + textOf(arguments) + ")";
    say("foreign-print", Severity::Error, name,
        "`" + std::string{tree.textOf(name)} + "`: the word is `print`", "write " + quoted(text));
    out.insert("print(", name);
    arguments.markAsMoved();
    out.append(std::move(arguments));
    out.insert(")", name);
}

void Repairer::separate(Pieces& arguments, SourceRange origin) {
    if (!arguments.empty()) {
        arguments.insert(", ", origin);
    }
}

void Repairer::printed(NodeId argument, Pieces& out) {
    Context context;
    context.printed = true;
    const Type type = model.meant(argument);
    context.want =
        tree[inner(argument)].kind == Kind::Binary && type == Word::String ? type : Word::End;
    expression(inner(argument), context, out);
}

/// `"x = %d\n", x` as `"x = ", x, "\n"`.
void Repairer::formatted(const std::vector<NodeId>& arguments, Pieces& out) {
    const SourceRange range = tree[arguments.front()].range;
    std::string_view text = tree.textOf(range);
    text = text.substr(1, text.size() - 2);
    std::string plain;
    std::size_t used = 1;
    const auto flush = [&] {
        if (!plain.empty()) {
            const bool isFirst = out.empty();
            separate(out, range);
            out.insert(printable("\"" + plain + "\"", isFirst), range);
            plain.clear();
        }
    };
    for (std::size_t at = 0; at < text.size(); ++at) {
        const std::size_t end = text[at] == '%' ? endOfSpecifier(text, at) : at;
        if (end > at && used < arguments.size()) {
            flush();
            separate(out, range);
            printed(arguments[used++], out);
            at = end - 1;
        } else {
            plain += text[at];
            at += text.substr(at, 2) == "%%" ? 1U : 0U;
        }
    }
    flush();
}

/// `cout << "x = " << x << endl`
bool Repairer::streamPrint(NodeId id, Pieces& out) {
    std::vector<NodeId> arguments;
    NodeId left = id;
    for (; tree[left].kind == Kind::Binary && tree[left].op == Word::ShiftLeft;
         left = tree[left].first) {
        arguments.push_back(tree.child(left, 1));
    }
    const std::string_view stream = tree.textOf(left);
    if (stream != "cout" && stream != "std::cout") {
        return false;
    }
    std::reverse(arguments.begin(), arguments.end());
    Pieces all;
    for (const NodeId argument : arguments) {
        separate(all, tree[argument].range);
        if (isEndOfLine(tree.textOf(argument))) {
            all.insert("\"\\n\"", tree[argument].range);
        } else if (all.empty() || tree[argument].op != Word::StringLiteral) {
            printed(argument, all);
        } else {
            all.insert(printable(std::string{tree.textOf(argument)}, false), tree[argument].range);
        }
    }
    finishPrint(tree[left].range, std::move(all), out);
    return true;
}

}  // namespace krel::Check
