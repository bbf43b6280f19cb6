"""Puts all single faults of a source into it at once, each behind a number that the program is
given when it starts (switch.h): one build then serves for all of them.

An expression with a fault becomes `(MUTANT(n) ? (with the fault) : (as it is))`, a statement that a
fault drops stands behind a condition. How far an expression reaches is told from the tokens alone.
What cannot be told at run time - the value of a `case`, the size of an array - does not compile;
the errors name the line, each line belongs to a fault, and that fault is left out
(faults_with_errors). So that tables and small functions take part, `constexpr` becomes `const` or
`inline` where the program allows it, and `constinit` goes: a variable without an initialiser of its
own gets its values before any other, as the constructors of other variables may use it.
"""

import os
import re
from dataclasses import dataclass, field

from faults import closing, is_binary, tokens_of

PRECEDENCE = {sign: level for level, signs in enumerate(
    ("* / %", "+ -", "<< >>", "<=>", "< <= > >=", "== !=", "&", "^", "|", "&&", "||", "? :",
     "= += -= *= /= %= &= |= ^= <<= >>="), 1) for sign in signs.split()}
HEADER = '#include "switch.h"\n'
OPENING = {")": "(", "]": "[", "}": "{"}
BEFORE_OPERAND = set("return case else do throw co_return".split())


@dataclass
class Node:
    """A stretch of the source with the faults that are switched there: number -> its other text."""
    start: int
    end: int
    statement: bool = False
    others: dict = field(default_factory=dict)
    inner: list = field(default_factory=list)


@dataclass
class Relaxed:
    """A `constexpr` that becomes `put`, of a name whose declaration ends at `reach`."""
    start: int
    end: int
    reach: int
    put: str
    name: str
    possible: bool  # a consteval cannot be anything else
    others: dict = field(default_factory=dict)


class Extents:
    """How far the expressions of a source reach."""

    def __init__(self, text):
        self.text = text
        self.tokens = tokens_of(text)
        self.at = {token.start: i for i, token in enumerate(self.tokens)}

    def opening(self, i):
        closes, depth = self.tokens[i].text, 0
        while i >= 0:
            depth += (self.tokens[i].text == closes) - (self.tokens[i].text == OPENING[closes])
            if depth == 0:
                return i
            i -= 1
        return 0

    def angle(self, i, step):
        """The other end of a template's brackets."""
        depth = 0
        while 0 <= i < len(self.tokens):
            sign = self.tokens[i].text
            depth += {"<": 1, ">": -1, ">>": -2}.get(sign, 0)
            if sign in ("<", ">", ">>") and depth * step <= 0:
                return i
            i += step
        return i - step

    def is_outer(self, i, level):
        """Whether the token is an operator that the expression does not reach across."""
        token = self.tokens[i]
        return (token.text in ("?", ":") or is_binary(self.text, token)) and \
            PRECEDENCE.get(token.text, 0) > level

    def right(self, i, level):
        """The end of the operand that begins with this token, for an operator of this level."""
        last = i
        while i < len(self.tokens):
            token = self.tokens[i]
            if token.text == "{" and self.text[token.start - 1].isspace():
                break
            if token.text in ")]},;" or self.is_outer(i, level - 1):
                break
            if token.text in "([{":
                i = closing(self.tokens, i)
            elif token.text == "<" and not is_binary(self.text, token):
                i = self.angle(i, 1)
            last = i
            i += 1
        return self.tokens[last].end

    def left(self, i, level):
        """The start of the operand that ends with this token."""
        first = last = i
        while i >= 0:
            token = self.tokens[i]
            behind = self.tokens[first].text if i < last else "."
            if token.text in ("(", "[", "{", ",", ";", "?", ":") or token.text in BEFORE_OPERAND:
                break
            if self.is_outer(i, level) or (token.text == "}" and behind not in (".", "->", "(")):
                break
            if token.text in OPENING:
                i = self.opening(i)
            elif token.text in (">", ">>") and not is_binary(self.text, token):
                i = self.angle(i, -1)
            first = i
            i -= 1
        return self.tokens[first].start

    def of(self, fault):
        """The stretch that a fault is switched in and whether it is a statement, or None."""
        same = (fault.start, fault.end)
        if fault.put == ";":
            i = self.at[fault.start]
            return None if i > 0 and self.tokens[i - 1].text == ":" and self.in_choice(i - 1) else \
                (*same, True)
        if fault.put.endswith((") && false", ") || true")):
            return (*same, False)
        i = self.at[fault.start]
        token = self.tokens[i]
        if token.text == "?":
            return self.left(i - 1, PRECEDENCE["||"]), self.tokens[i - 1].end, False
        if token.text in ("!", "~"):
            return token.start, self.right(i + 1, 0), False
        if token.text in ("++", "--"):
            before = self.tokens[i - 1]
            if before.end == token.start and (before.kind == "word" or before.text in ")]"):
                return self.left(i - 1, 0), token.end, False
            return token.start, self.right(i + 1, 0), False
        if token.text in ("min", "max"):
            end = i + 1
            if self.tokens[end].text == "<":
                end = self.angle(end, 1) + 1
            return self.left(i, 0), self.tokens[closing(self.tokens, end)].end, False
        if token.text in PRECEDENCE:
            level = max(PRECEDENCE[token.text], PRECEDENCE[fault.put])
            return self.left(i - 1, level), self.right(i + 1, level), False
        return (*same, False)

    def in_choice(self, i):
        """Whether this colon belongs to a question mark."""
        while i > 0 and self.tokens[i].text not in (";", "{", "}", "?", "case", "default"):
            i -= 1
        return self.tokens[i].text == "?"

    def parameters(self):
        """The parameter lists of templates."""
        return [(token.start, self.tokens[self.angle(i + 1, 1)].end)
                for i, token in enumerate(self.tokens) if token.text == "template"]

    def is_part_of_text(self, start):
        """Whether a text begins here that is written in several pieces."""
        i = self.at.get(start, 0)
        pieces = self.tokens[max(i - 1, 0):i + 2]
        return self.tokens[i].text.endswith('"') and sum(t.text.endswith('"') for t in pieces) > 1

    def sizes(self):
        """The sizes of arrays that are declared with them: `type name[size]`. As a compiler's
        extension those of a function may vary, but such an array is none to the functions that it
        is handed to."""
        found, last = [], None
        for i, token in enumerate(self.tokens):
            if token.text != "[" or i < 2:
                continue
            is_word = [re.fullmatch(r"[A-Za-z_]\w*", t.text) for t in self.tokens[i - 2:i]]
            declared = all(is_word) and self.tokens[i - 2].text not in BEFORE_OPERAND
            following = self.tokens[i - 2].text == "," and last == i - 3
            if declared or following or last == i - 1:
                last = closing(self.tokens, i)
                found.append((token.start, self.tokens[last].end))
        return found

    def relaxed(self):
        for i, token in enumerate(self.tokens):
            behind = self.tokens[min(i + 1, len(self.tokens) - 1)].text
            if token.text in ("constinit", "consteval"):
                pass
            elif token.text != "constexpr" or self.tokens[i - 1].text == "if" or behind == "const":
                continue
            j = i + 1
            while self.tokens[j].text not in ("=", "{", "(", ";"):
                j = (self.angle(j, 1) if self.tokens[j].text == "<" else j) + 1
            name = j - 1
            while self.tokens[name].text in ("]", ")"):
                name = self.opening(name) - 1
            is_function = self.tokens[j].text == "("
            put = "" if token.text == "constinit" else "inline" if is_function else "const"
            if token.text == "constinit" and behind != "const":
                if self.tokens[j].text != ";":
                    continue
                put = "MUTANT_EARLY"
            if is_function and "inline" in (self.tokens[i - 1].text, behind):
                put = ""
            while self.tokens[j].text != ";":
                closes = is_function and self.tokens[j].text == "{"
                j = closing(self.tokens, j) if self.tokens[j].text in "([{" else j
                if closes:
                    break
                j += 1
            yield Relaxed(token.start, token.end, self.tokens[j].end, put, self.tokens[name].text,
                          token.text != "consteval")


class Switched:
    """A source with its faults switched: `text`, and whose lines are whose."""

    def __init__(self, source, faults, left_out, kept):
        """faults: number -> Fault; left_out: numbers; kept: names whose constexpr stays, and with
        it all that it declares."""
        self.source = source
        self.extents = Extents(source)
        self.pieces, self.owners, self.line = [], {}, 1
        self.numbers, self.names = set(), set()
        nodes, constant = {}, self.extents.parameters() + self.extents.sizes()
        for one in self.extents.relaxed():
            if one.name in kept or not one.possible:
                constant.append((one.start, one.reach))
            else:
                nodes[one.start, one.end, None] = one
        for number, fault in faults.items():
            if number in left_out or any(a <= fault.start < b for a, b in constant):
                continue
            place = self.extents.of(fault)
            if place is None:
                continue
            start, end, statement = place
            if self.extents.is_part_of_text(start):
                continue
            put = fault.put
            if source[fault.start:fault.end] == "!":
                put = "static_cast<bool>("
            if source[fault.start:fault.end] == "?":
                put = put[:-2]
                other = source[start:end] + " " + put
            else:
                other = source[start:fault.start] + put + source[fault.end:end]
            if put == "static_cast<bool>(":
                other += ")"
            node = nodes.setdefault((start, end, statement), Node(start, end, statement))
            node.others[number] = other
        top = Node(0, len(source))
        self.emit(HEADER, ())
        self.nest(top, sorted(nodes.values(), key=lambda n: (n.start, -n.end)))
        self.emit_inner(top, ())
        self.text = "".join(self.pieces)

    def statement(self, line):
        """The faults of the statement that goes on from this line."""
        found, lines = set(), self.text.split("\n")
        while line <= len(lines):
            found |= set(self.owners.get(line, ()))
            if ";" in lines[line - 1]:
                break
            line += 1
        return found

    def nest(self, top, nodes):
        stack = [top]
        for node in nodes:
            while node.start >= stack[-1].end:
                stack.pop()
            if node.end <= stack[-1].end:  # else the two overlap, and the first stays
                stack[-1].inner.append(node)
                stack += [node] if isinstance(node, Node) else []

    def emit(self, text, owners):
        lines = text.count("\n")
        for line in range(self.line, self.line + lines + 1):
            if owners or line > self.line:
                self.owners[line] = owners
        self.line += lines
        self.pieces.append(text)

    def emit_inner(self, node, owners):
        at = node.start
        for inner in node.inner:
            self.emit(self.source[at:inner.start], owners)
            if isinstance(inner, Relaxed):
                self.names.add(inner.name)
                self.emit(inner.put, owners)
            else:
                first = self.line
                self.emit_node(inner)
                self.emit("\n", ())
                # It may be the cause of what is told of the lines around it.
                self.owners[self.line] = owners or tuple(inner.others)
                self.owners[first] = self.owners.get(first, ()) or tuple(inner.others)
            at = inner.end
        self.emit(self.source[at:node.end], owners)

    def emit_node(self, node):
        self.numbers.update(node.others)
        numbers = tuple(node.others)
        if node.statement:
            number = numbers[0]
            self.emit(f"\n{{ if (!MUTANT({number})) {{\n", numbers)
            self.emit_inner(node, numbers)
            self.emit("\n} }", numbers)
            return
        self.emit("\n", ())
        sign = "("
        for number, other in node.others.items():
            self.emit(f"{sign}MUTANT({number}) ? ({other})\n", (number,))
            sign = ": "
        self.emit(": (", numbers)
        self.emit_inner(node, numbers)
        self.emit("))", numbers)


ERROR = re.compile(r"^(\S+?):(\d+):\d+: (fatal error|error|note|.*required from)")
UNDEFINED = re.compile(r"undefined (?:symbol: |reference to [`'])(?:[\w:]*::)?(\w+)")
QUOTED = re.compile("[‘'](.*?)[’']")


def faults_with_errors(printed, switched, where):
    """What a failed build speaks of: numbers of faults, and (path, name) of what must stay
    constexpr. `switched`: absolute path -> Switched; `where`: the folder of the build."""
    numbers, kept, unexplained = set(), set(), []

    def holding(words, paths):
        """Where one of these names is relaxed: in one of these files, or else in any."""
        found = {(path, name) for path, one in switched.items() for name in one.names & words}
        return {x for x in found if x[0] in paths} or found

    for block in re.split(r"\n(?=\S+?:\d+:\d+: (?:fatal )?error)", "\n" + printed):
        lines = [(os.path.realpath(os.path.join(where, m.group(1))), int(m.group(2)), line)
                 for line in block.splitlines() if (m := ERROR.match(line))]
        paths = {path for path, _, _ in lines}
        kept |= holding(set(UNDEFINED.findall(block)), paths)
        if not any("error: " in line for _, _, line in lines):
            continue
        words = {word for text in QUOTED.findall(block) for word in re.findall(r"\w+", text)}
        first = [x for x in lines if "error: " in x[2]]
        of_lines = set()
        for path, number, _ in first + [x for x in lines if x not in first]:
            of_lines = of_lines or set(switched[path].owners.get(number, ())
                                       if path in switched else ())
        named = holding(words, paths) if not of_lines else set()
        if not of_lines and not named:  # the line itself, as the compiler shows it
            shown = re.findall(r"^ *\d+ \| (.*)", block, re.MULTILINE)
            named = holding({w for line in shown for w in re.findall(r"\w+", line)}, paths)
        numbers |= of_lines
        kept |= named
        if not of_lines and not named:
            unexplained += [(path, number) for path, number, _ in first if path in switched]
    if not numbers and not kept:
        for path, number in unexplained:
            numbers |= switched[path].statement(number)
    return numbers, kept
