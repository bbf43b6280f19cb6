"""Puts all single faults of a source into it at once, each behind a number that the program is given
when it starts (switch.h): one build then serves for all of them.

An expression with a fault becomes `(MUTANT(n) ? (with the fault) : (as it is))`, a statement that a
fault drops stands behind a condition. How far an expression reaches is told from the tokens alone.
What cannot be told at run time - the value of a `case`, the size of an array - does not compile;
the errors name the line, each line belongs to a fault, and that fault is left out (withoutErrors).
So that tables and small functions take part, `constexpr` becomes `const` or `inline` where the
program allows it.
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
    """A `constexpr` that becomes `put`, of a name."""
    start: int
    end: int
    put: str
    name: str
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
        if token.text in ("?", ":"):
            return True
        return is_binary(self.text, token) and PRECEDENCE.get(token.text, 0) > level

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
            if token.text in ("(", "[", "{", ",", ";") or token.text in BEFORE_OPERAND:
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

    def relaxed(self):
        for i, token in enumerate(self.tokens):
            if token.text != "constexpr" or self.tokens[i - 1].text == "if":
                continue
            j = i + 1
            while self.tokens[j].text not in ("=", "{", "(", ";"):
                j = (self.angle(j, 1) if self.tokens[j].text == "<" else j) + 1
            name = j - 1
            while self.tokens[name].text in ("]", ")"):
                name = self.opening(name) - 1
            put = "inline" if self.tokens[j].text == "(" else "const"
            if put == "inline" and "inline" in (self.tokens[i - 1].text, self.tokens[i + 1].text):
                put = ""
            if put == "const" and self.tokens[i + 1].text == "const":
                continue
            yield Relaxed(token.start, token.end, put, self.tokens[name].text)


class Switched:
    """A source with its faults switched: `text`, and whose lines are whose."""

    def __init__(self, source, faults, left_out, kept):
        """faults: number -> Fault; left_out: numbers; kept: names whose constexpr stays."""
        self.source = source
        self.extents = Extents(source)
        self.pieces, self.owners, self.line = [], {}, 1
        self.numbers, self.names = set(), set()
        nodes = {}
        for number, fault in faults.items():
            place = self.extents.of(fault) if number not in left_out else None
            if place is None:
                continue
            start, end, statement = place
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
        for one in self.extents.relaxed():
            if one.name not in kept:
                nodes[one.start, one.end, None] = one
        top = Node(0, len(source))
        self.emit(HEADER, ())
        self.nest(top, sorted(nodes.values(), key=lambda n: (n.start, -n.end)))
        self.emit_inner(top, ())
        self.text = "".join(self.pieces)

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
                self.emit_node(inner)
                self.emit("\n", ())
                # Of what is told behind an expression it may be the cause.
                self.owners[self.line] = owners or tuple(inner.others)
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
    """What a failed build speaks of: numbers of faults, and names that must stay constexpr.
    `switched`: absolute path -> Switched; `where`: the folder of the build."""
    numbers, names = set(), set()
    relaxed = {name for one in switched.values() for name in one.names}
    names |= relaxed & set(UNDEFINED.findall(printed))
    for block in re.split(r"\n(?=\S+?:\d+:\d+: (?:fatal )?error)", "\n" + printed):
        lines = [(os.path.realpath(os.path.join(where, m.group(1))), int(m.group(2)), line)
                 for line in block.splitlines() if (m := ERROR.match(line))]
        if not any(": error" in line or ": fatal error" in line for _, _, line in lines):
            continue
        first = [x for x in lines if "error: " in x[2]] + [x for x in lines if "error: " not in x[2]]
        for path, number, line in first:
            owners = switched[path].owners.get(number, ()) if path in switched else ()
            if owners:
                numbers.update(owners)
                break
            quoted = {word for text in QUOTED.findall(line)
                      for word in re.findall(r"\w+(?=\()|\w+$", text)}
            if relaxed & quoted:
                names |= relaxed & quoted
                break
    return numbers, names
