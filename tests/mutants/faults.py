"""The single faults that can be put into a C++ source: faults_of(text) lists them.

Text is read as tokens, not parsed: comments, preprocessor lines, static assertions and the inside
of templates are left alone. Binary operators are known by the spaces around them, which
clang-format keeps. A fault that the compiler refuses costs a build and counts as none.
"""

import re
from dataclasses import dataclass

TOKEN = re.compile(r"""
    (?P<directive> ^[ \t]*\#(?:\\\n|[^\n])* )
  | (?P<comment> //[^\n]* | /\*.*?\*/ )
  | (?P<text> (?:u8|u|U|L)? (?: R"(?P<raw>[^(\s]*)\(.*?\)(?P=raw)" | "(?:\\.|[^"\\\n])*" ) )
  | (?P<character> (?:u8|u|U|L)? '(?:\\.|[^'\\\n])+' )
  | (?P<number> (?:0[xX][0-9a-fA-F']+ | 0[bB][01']+ | \d[\d']*(?:\.\d*)?(?:[eE][+-]?\d+)? )
                [uUlLfFzZ]* )
  | (?P<word> [A-Za-z_]\w* )
  | (?P<sign> <=>|<<=|>>=|\.\.\.|::|->|\+\+|--|<<|>>|<=|>=|==|!=|&&|\|\||[-+*/%&|^]=|[^\s\w] )
""", re.VERBOSE | re.DOTALL | re.MULTILINE)

BINARY = {
    "<": "<=", "<=": "<", ">": ">=", ">=": ">", "==": "!=", "!=": "==", "&&": "||", "||": "&&",
    "+": "-", "-": "+", "*": "/", "/": "*", "%": "/", "&": "|", "|": "&", "^": "|", "<<": ">>",
    ">>": "<<", "+=": "-=", "-=": "+=", "*=": "/=", "/=": "*=", "&=": "|=", "|=": "&=", "^=": "|=",
    "<<=": ">>=", ">>=": "<<=",
}
WORDS = {"true": "false", "false": "true", "min": "max", "max": "min"}
# A statement that begins with one of these is a declaration or holds others.
NOT_DROPPED = set("""return using typedef const constexpr constinit static auto struct class enum
    union case default goto public private protected friend template namespace extern inline virtual
    explicit if for while do switch else static_assert operator""".split())


@dataclass(frozen=True)
class Fault:
    start: int
    end: int
    put: str  # what stands there instead


@dataclass(frozen=True)
class Token:
    kind: str
    text: str
    start: int
    end: int


def tokens_of(source):
    found = [Token(m.lastgroup if m.lastgroup != "raw" else "text", m.group(), m.start(), m.end())
             for m in TOKEN.finditer(source)]
    return [t for t in found if t.kind not in ("directive", "comment")]


def closing(tokens, opening):
    """The index of the bracket that closes the one at `opening`."""
    depth = 0
    for i in range(opening, len(tokens)):
        depth += tokens[i].text in "([{"
        depth -= tokens[i].text in ")]}"
        if depth == 0:
            return i
    return len(tokens) - 1


def without_assertions(tokens):
    kept, i = [], 0
    while i < len(tokens):
        if tokens[i].text == "static_assert":
            i = closing(tokens, i + 1) + 1
        else:
            kept.append(tokens[i])
            i += 1
    return kept


def numbers(token):
    digits = re.match(r"(?:0[xX][0-9a-fA-F']+|0[bB][01']+|[\d.eE+'-]+)", token.text).group()
    suffix = token.text[len(digits):]
    digits = digits.replace("'", "")
    if digits[:2] in ("0x", "0X", "0b", "0B"):
        value = int(digits, 0)
        highest = 1 << max(value.bit_length() - 1, 0)
        values = {value ^ 1, value ^ highest if highest > 1 else value ^ 2}
        return [hex(v) + suffix for v in sorted(values)]
    if re.search(r"[.eE]", digits):
        return [f"({token.text} + 1)"]
    value = int(digits, 8 if re.match(r"0\d", digits) else 10)
    return [f"{v}{suffix}" for v in (value + 1, value - 1) if v >= 0]


def texts(token):
    """Another last character; nothing for an empty text."""
    match = re.match(r"""(.*?['"])(?:(.*)((?:\\x[0-9A-Fa-f]+|\\[0-7]{1,3}|\\.|[^\\])))?(['"])$""",
                     token.text, re.DOTALL)
    if "R\"" in token.text or match is None or match.group(3) is None:
        return []
    last = "a" if match.group(3).lower() != "a" else "b"
    return [match.group(1) + match.group(2) + last + match.group(4)]


def is_binary(source, token):
    return source[token.start - 1].isspace() and source[token.end].isspace()


def condition_faults(source, tokens):
    for i, token in enumerate(tokens[:-1]):
        if token.text not in ("if", "while") or tokens[i + 1].text != "(":
            continue
        end = closing(tokens, i + 1)
        parts = [j for j in range(i + 2, end) if tokens[j].text == ";"]
        first = tokens[parts[-1] + 1] if parts else tokens[i + 2]
        start, stop = first.start, tokens[end].start
        text = source[start:stop]
        if re.match(r"(const\s+)?[\w:<>]+[\s*&]+\w+\s*=[^=]", text):
            continue  # a declaration
        yield Fault(start, stop, f"({text}) && false")
        if token.text == "if":
            yield Fault(start, stop, f"({text}) || true")
    for token in tokens:
        if token.text == "?":
            yield Fault(token.start, token.end, "&& false ?")
            yield Fault(token.start, token.end, "|| true ?")


def statement_faults(source, tokens):
    start = 0
    while start < len(tokens):
        end = start
        while end < len(tokens) and tokens[end].text not in (";", "{", "}", ":"):
            if tokens[end].text in "([":
                end = closing(tokens, end)
                if tokens[start].text in ("if", "for", "while", "switch"):
                    break
            end += 1
        if end < len(tokens) and tokens[end].text == ";" and end > start:
            text = source[tokens[start].start:tokens[end].end]
            if is_dropped(text, tokens[start], tokens[end - 1]):
                yield Fault(tokens[start].start, tokens[end].end, ";")
        start = end + 1
        if start < len(tokens) and tokens[start].text in ("else", "do"):
            start += 1


def is_dropped(text, first, last):
    if text in ("return;", "break;", "continue;"):
        return True
    if first.text in NOT_DROPPED or last.text in ("delete", "default", "override", "const"):
        return False
    if re.match(r"(\+\+|--)|[^=(]*(\+\+|--);$", text):
        return True
    place = r"[\w:.\[\]*()<>+-]+?"
    return (re.match(place + r"(\[[^=]*\])?\s(=|[-+*/%&|^]=|<<=|>>=)\s", text) is not None or
            re.match(place + r"\(", text) is not None)


def faults_of(source):
    """Every single fault for this text, in the order of their places."""
    tokens = without_assertions(tokens_of(source))
    faults = []
    for before, token in zip([tokens[0]] + tokens, tokens):
        put = []
        if token.kind == "number":
            put = numbers(token)
        elif token.kind in ("text", "character"):
            put = texts(token)
        elif token.text in WORDS:
            is_word = token.text in ("true", "false") or before.text == "::"
            put = [WORDS[token.text]] if is_word else []
        elif token.text in ("++", "--"):
            put = ["--" if token.text == "++" else "++"]
        elif token.text in ("!", "~"):
            put = [""]
        elif token.text in BINARY and before.text != "operator" and is_binary(source, token):
            put = [BINARY[token.text]]
        faults += [Fault(token.start, token.end, p) for p in put]
    faults += condition_faults(source, tokens)
    faults += statement_faults(source, tokens)
    return sorted(set(faults), key=lambda f: (f.start, f.end, f.put))
