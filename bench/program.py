#!/usr/bin/env python3
"""Writes one realistic program in Krel and in C, line for line.

Usage: program.py [--lines N | --functions N] [--seed N] PREFIX
writes PREFIX.krl and PREFIX.c. The same size and seed give the same bytes on every machine.

Both programs have the same functions, declarations, loops, calls and prints on the same lines, and
print the same when they are run. The Krel text is the source: the shapes below are functions of 10
to 25 lines as people write them, `to_c` turns each one into C once, and both are then filled with
the same names and numbers. Every eight functions are called from a driver function, every twelve
drivers from another one, and so on up to `main`, so that everything is reachable and no function
is out of proportion.
"""

import argparse
import random
import re

# A shape is Krel text; %(x)s is a gap. Its first line says what the function is called with:
# "name: type (argument types)", then the Krel text follows. Names of the gaps: self (the function),
# noun, place, word (words), s1.. (small numbers), n1.. (numbers), h1.. (halves and quarters, which
# both languages print alike), and the kinds of earlier functions (see KINDS) for calls.
SHAPES = r"""
sum: total
# Adds up the %(noun)s above the limit.
int %(self)s(int limit, int bonus) {
    int %(noun)s[6] = {%(n1)d, %(n2)d, %(n3)d, %(n4)d, %(n5)d, %(s1)d};
    int total = %(n6)d;
    for (int i = 0; i < 6; i++) {
        int %(word)s = %(noun)s[i];
        if (%(word)s > limit) {
            total += %(word)s;
        } else {
            total = total + bonus * %(s2)d;
        }
    }
    return total;
}
---
gcd: total
# The greatest common divisor, by repeated subtraction.
int %(self)s(int left, int right) {
    int a = left + %(n1)d;
    int b = right + %(n2)d;
    while (a != b) {
        if (a > b) {
            a -= b;
        } else {
            b -= a;
        }
    }
    return a;
}
---
sort: total
# Sorts the %(noun)s and returns the middle one.
int %(self)s(int first, int last) {
    int %(noun)s[7] = {%(n1)d, %(n2)d, %(n3)d, %(n4)d, %(n5)d, %(n6)d, %(n7)d};
    %(noun)s[0] = first;
    %(noun)s[6] = last;
    for (int pass = 0; pass < 6; pass++) {
        for (int i = 0; i < 6; i++) {
            int next = i + 1;
            int low = %(noun)s[i];
            int high = %(noun)s[next];
            if (low > high) {
                %(noun)s[i] = high;
                %(noun)s[next] = low;
            }
        }
    }
    return %(noun)s[3];
}
---
digits: total
# Counts the digits of a number and adds them to the %(noun)s.
int %(self)s(int number, int %(noun)s) {
    int rest = number * %(n1)d + %(n2)d;
    int count = 0;
    int sum = 0;
    while (rest > 0) {
        int tenth = rest / 10;
        int digit = rest - tenth * 10;
        sum += digit;
        count++;
        rest = tenth;
    }
    return (sum + %(noun)s) * count;
}
---
average: ratio
# The average of the %(noun)s, moved by an offset.
double %(self)s(double offset, int rounds) {
    double %(noun)s[4] = {%(h1)s, %(h2)s, %(h3)s, %(h4)s};
    double sum = %(h5)s;
    int count = 0;
    for (int i = 0; i < 4; i++) {
        sum = sum + %(noun)s[i];
        count += rounds;
    }
    double quarter = 0.25;
    if (count > %(n1)d) {
        sum = sum + offset;
    }
    return sum * quarter;
}
---
interest: ratio
# What is left of a %(word)s after some years of interest.
double %(self)s(double amount, int years) {
    double rate = %(h1)s;
    double limit = %(h2)s;
    double balance = amount;
    int year = 0;
    while (year < years) {
        balance = balance + rate;
        if (balance > limit) {
            balance = balance - %(h3)s;
        }
        year++;
    }
    return balance;
}
---
prime: choice
# Whether a %(word)s number has no divisor.
boolean %(self)s(int candidate) {
    int number = candidate + %(n1)d;
    boolean prime = true;
    int divisor = 2;
    while (divisor * divisor <= number) {
        int quotient = number / divisor;
        if (quotient * divisor == number) {
            prime = false;
            break;
        }
        divisor++;
    }
    return prime;
}
---
range: choice
# Whether the %(word)s is inside of the range and not excluded.
boolean %(self)s(int %(word)s) {
    int low = %(s1)d;
    int high = %(n1)d;
    boolean inside = false;
    if ((%(word)s >= low && %(word)s <= high) || %(word)s == %(n2)d) {
        inside = true;
    }
    boolean excluded = false;
    if (%(word)s == %(n3)d) {
        excluded = true;
    }
    return inside && !excluded;
}
---
grade: report
# Reports which level the %(noun)s have reached.
void %(self)s(string title, int %(noun)s) {
    string level = "normal";
    if (%(noun)s > %(n1)d) {
        level = "very high (%(noun)s)";
    } elseif (%(noun)s > %(n2)d) {
        level = "high";
    } elseif (%(noun)s == %(n3)d) {
        level = "exactly as planned for %(place)s";
    } else {
        level = "low";
    }
    print(title, ": the level of %(noun)s in %(place)s is ", level, "\n");
    int half = %(noun)s / 2;
    print("half of it is ", half, ", twice it is ", %(noun)s * 2, ".\n");
}
---
letters: report
# Prints a row of letters below the %(word)s title.
void %(self)s(string title, int count) {
    character letter = '%(letter)s';
    int code = (int) letter;
    print("%(word)s ", title, " ");
    for (int i = 0; i < count && i < 40; i++) {
        if (code > 122) {
            code = 97;
            continue;
        }
        character shown = (character) code;
        print(shown);
        code += %(s1)d;
    }
    print(" (%(place)s)\n");
}
---
combine: total calls
# Combines what others compute for %(place)s.
int %(self)s(int first, int second) {
    int %(noun)s = %(total)s(first, %(n1)d);
    int %(word)s = %(total2)s(second, %(s1)d);
    boolean usable = %(choice)s(%(noun)s);
    int result = %(noun)s + %(word)s;
    if (usable) {
        result = result * %(s2)d;
    } elseif (%(noun)s > %(word)s) {
        result = result - %(word)s / %(s3)d;
    }
    %(report)s("%(place)s", result);
    return result;
}
---
blend: ratio calls
# Blends two ratios of %(place)s.
double %(self)s(double start, int steps) {
    double %(word)s = %(ratio)s(start, steps);
    double other = %(ratio2)s(%(h1)s, %(s1)d);
    double blended = (%(word)s + other) * 0.5;
    if (blended < %(h2)s) {
        print("%(word)s below ", %(h2)s, ": ", blended, "\n");
        blended = blended + %(h3)s;
    }
    for (int turn = 0; turn < steps; turn++) {
        blended = blended + %(h4)s;
    }
    return blended;
}
---
table: report calls
# Prints a small table of %(noun)s for %(place)s.
void %(self)s(string title, int rows) {
    print("%(noun)s of %(place)s, ", title, "\n");
    int row = 0;
    int sum = 0;
    while (row < %(s1)d) {
        int cell = row * rows + %(n1)d;
        boolean marked = %(choice)s(cell);
        if (marked) {
            print("row ", row, " has ", cell, " *\n");
        } else {
            print("row ", row, " has ", cell, "\n");
        }
        sum += cell;
        row++;
    }
    int last = %(total)s(sum, rows);
    print("sum ", sum, ", total ", last, "\n");
}
"""

# What a driver writes to call an earlier function of each kind: {name} is the function, {n} the
# number of the call in the driver, {a} and {b} numbers.
KINDS = {
    "total": ["    int result{n} = {name}({a}, {b});", '    print("{name}: ", result{n}, "\\n");'],
    "ratio": ["    double ratio{n} = {name}({a}.5, {b});",
              '    print("{name}: ", ratio{n}, "\\n");'],
    "choice": ["    boolean choice{n} = {name}({a});", '    print("{name}: ", choice{n}, "\\n");'],
    "report": ['    {name}("number {a}", {b});'],
    "driver": ["    {name}();"],
}
FIRST_FAN_OUT = 8
FAN_OUT = 12
DRIVERS = ["runGroup", "runSection", "runChapter", "runVolume", "runShelf", "runLibrary"]

NOUNS = """scores prices weights points orders samples values marks lengths widths heights ages
    votes wins parts boxes pages tickets shares miles""".split()
WORDS = """score price weight step order sample width length depth mark share amount speed volume
    signal budget profit reading entry load""".split()
PLACES = """Berlin Porto Oslo Quito Lima Kyoto Turin Ghent Perth Bergen Malmo Dakar Accra Hanoi
    Leeds Basel Split Izmir Natal Riga""".split()

C_TYPES = {"int": "long", "boolean": "int", "character": "char", "string": "const char *"}
FORMATS = {"int": "%ld", "double": "%.17g", "character": "%c", "string": "%s", "boolean": "%s"}
DECLARATION = re.compile(r"\b(int|double|boolean|character|string) ([\w%()]+?)(?= =|\[|,|\)|;)")
PRINT = re.compile(r"^(\s*)print\((.*)\);$")


def to_c(krel):
    """The same lines in C. Gaps of the Krel text stay gaps."""
    types = {name: kind for kind, name in DECLARATION.findall(krel)}
    return "\n".join(line_to_c(line, types) for line in krel.split("\n"))


def line_to_c(line, types):
    if line.lstrip().startswith("#"):
        return line.replace("#", "//", 1)
    shown = PRINT.match(line)
    if shown:
        return print_to_c(*shown.groups(), types)
    line = re.sub(r"\b(int|boolean|character|string)\b", lambda word: C_TYPES[word[0]], line)
    line = line.replace("* ", "*") if "const char" in line else line
    line = line.replace("elseif", "else if").replace("void main()", "int main(void)")
    return re.sub(r"\b(true|false)\b", lambda word: str(int(word[0] == "true")), line)


def print_to_c(indent, arguments, types):
    """A print as one printf: literals become part of the format."""
    text, values = "", []
    for argument in re.findall(r'"[^"]*"|[^,"]+', arguments):
        argument = argument.strip()
        if argument.startswith('"'):
            text += argument[1:-1]
        elif argument:
            kind = types.get(re.match(r"[\w%()]+", argument)[0])
            kind = kind or ("double" if argument.startswith("%(h") else "int")
            text += FORMATS[kind].replace("%", "%%")
            values.append(argument + ' ? "true" : "false"' if kind == "boolean" else argument)
    return f'{indent}printf({", ".join([chr(34) + text + chr(34), *values])});'


class Shape:
    def __init__(self, text):
        head, self.krel = text.strip("\n").split("\n", 1)
        self.name, rest = head.split(": ")
        self.kind, *calls = rest.split()
        self.calls = bool(calls)
        self.c = to_c(self.krel)
        self.lines = self.krel.count("\n") + 1


class Program:
    """The program while it grows; `krel` and `c` hold the texts of its functions, in order."""

    def __init__(self, seed):
        self.random = random.Random(seed)
        self.shapes = [Shape(text) for text in SHAPES.split("---\n")]
        self.plain = [shape for shape in self.shapes if not shape.calls]
        self.krel = [f"# A generated program, seed {seed}."]
        self.c = ["int printf(const char *format, ...);"]
        self.lines = 1
        self.functions = 0
        self.by_kind = {"total": [], "ratio": [], "choice": [], "report": []}
        self.waiting = []  # per level: (kind, name) of the functions that no one calls yet
        self.drivers = []  # per level: how many drivers of such functions there are

    def add(self, krel, c):
        self.krel.append(krel)
        self.c.append(c)
        self.lines += krel.count("\n") + 1

    def add_function(self):
        # The first functions are plain ones, so that there is one of each kind to be called.
        early = self.functions < len(self.plain)
        shape = self.plain[self.functions] if early else self.random.choice(self.shapes)
        self.functions += 1
        name = f"{shape.name}{self.functions}"
        gaps = self.gaps(name)
        self.add("\n" + shape.krel % gaps, "\n" + shape.c % gaps)
        self.by_kind[shape.kind].append(name)
        self.enqueue(0, shape.kind, name)

    def gaps(self, name):
        choose = self.random
        gaps = {"self": name, "noun": choose.choice(NOUNS), "word": choose.choice(WORDS),
                "place": choose.choice(PLACES), "letter": choose.choice("abcdefghijk")}
        for index in range(1, 8):
            gaps[f"n{index}"] = choose.randrange(10, 100)
            gaps[f"s{index}"] = choose.randrange(2, 6)
            gaps[f"h{index}"] = f"{choose.randrange(1, 40)}.{choose.choice(['25', '5', '75'])}"
        for kind, names in self.by_kind.items():
            if names:
                gaps[kind] = choose.choice(names)
                gaps[kind + "2"] = choose.choice(names)
        return gaps

    def enqueue(self, level, kind, name):
        if level == len(self.waiting):
            self.waiting.append([])
            self.drivers.append(0)
        waiting = self.waiting[level]
        waiting.append((kind, name))
        if len(waiting) == (FAN_OUT if level else FIRST_FAN_OUT):
            self.drivers[level] += 1
            driver = f"{DRIVERS[level]}{self.drivers[level]}"
            self.add(*self.caller(f"void {driver}() {{", waiting))
            waiting.clear()
            self.enqueue(level + 1, "driver", driver)

    def caller(self, head, callees):
        """A function that calls all of these, in both languages."""
        body = []
        for number, (kind, name) in enumerate(callees):
            a, b = self.random.randrange(10, 50), self.random.randrange(2, 9)
            body += [line.format(name=name, n=number, a=a, b=b) for line in KINDS[kind]]
        krel = "\n".join(["", head, *body, "}"])
        c = to_c(krel) % ()
        return krel, c

    def main_lines(self):
        """How long `main` would be now, the empty line before it included."""
        return 3 + sum(len(KINDS[kind]) for level in self.waiting for kind, name in level)

    def finish(self):
        callees = [entry for level in reversed(self.waiting) for entry in level]
        self.add(*self.caller("void main() {", callees))
        return "\n".join(self.krel) + "\n", "\n".join(self.c) + "\n"


def generate(lines=None, functions=None, seed=1):
    """The program with at least so many lines, or exactly so many functions beside the drivers and
    `main`, as a pair of texts: Krel and C."""
    program = Program(seed)
    while (program.functions < functions if functions else
           program.lines + program.main_lines() < lines or program.functions == 0):
        program.add_function()
    return program.finish()


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    size = parser.add_mutually_exclusive_group()
    size.add_argument("--lines", type=int, default=1000)
    size.add_argument("--functions", type=int)
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("prefix", help="writes PREFIX.krl and PREFIX.c")
    options = parser.parse_args()
    krel, c = generate(options.lines, options.functions, options.seed)
    for suffix, text in ((".krl", krel), (".c", c)):
        with open(options.prefix + suffix, "w", encoding="ascii") as out:
            out.write(text)


if __name__ == "__main__":
    main()
