"""Where a source file can be changed in one place, and to what."""
import re
import zlib

TOKEN = re.compile(r"""
    (?P<skip>//[^\n]*|/\*.*?\*/|^[ \t]*\#(?:[^\\\n]|\\.)*|\s+)
  | (?P<raw>R"(?P<mark>\w*)\(.*?\)(?P=mark)")
  | (?P<string>"(?:[^"\\\n]|\\.)*")
  | (?P<number>(?:0[xX][\da-fA-F']+|\d[\d']*(?:\.\d+)?)[uUlLfF]*\b)
  | (?P<char>'(?:[^'\\\n]|\\.)+')
  | (?P<word>\w+)
  | (?P<sign><<=|>>=|<=>|\+\+|--|&&|\|\||[-+*/%&|^=!<>]=|<<|>>|->|::|\[\[|\]\]|\.\.\.|.)
""", re.S | re.M | re.X)

# Binary signs stand between blanks; brackets of templates, references and pointers do not.
BINARY = {"<": "<=", "<=": "<", ">": ">=", ">=": ">", "==": "!=", "!=": "==", "&&": "||", "||": "&&",
          "+": "-", "-": "+", "*": "/", "/": "*", "%": "*", "&": "|", "|": "&", "^": "&", "<<": ">>", ">>": "<<",
          "+=": "-=", "-=": "+=", "*=": "+=", "|=": "&=", "&=": "|=", "^=": "|=", "<<=": ">>=", ">>=": "<<="}
ANYWHERE = {"++": "--", "--": "++"}
WORDS = {"true": "false", "false": "true", "break": "continue", "continue": "break"}
# What these begin is a declaration: the compiler checks it, or nothing is run.
DECLARATIONS = {"static_assert", "template", "using", "extern", "operator", "concept", "requires", "friend"}
NO_CALLS = {"if", "for", "while", "switch", "return", "do", "else", "case", "default", "break", "continue", "sizeof",
            "goto", "public", "private", "protected", "constexpr", "const", "static", "auto", "inline", "namespace",
            "struct", "class", "enum", "delete", "new", "void", "bool", "char", "int"}


class Token:
    def __init__(self, match):
        self.kind, self.text, self.at, self.end = match.lastgroup, match[0], match.start(), match.end()
        if self.kind == "mark":
            self.kind = "raw"


def tokens_of(text):
    found = [Token(match) for match in TOKEN.finditer(text)]
    return [token for token in found if token.kind != "skip"]


def closing(tokens, index):
    """The index of the bracket that closes the one at the index."""
    depth = 0
    for at in range(index, len(tokens)):
        depth += {"(": 1, "[": 1, "{": 1, ")": -1, "]": -1, "}": -1}.get(tokens[at].text, 0)
        if depth == 0:
            return at
    return len(tokens) - 1


def end_of_declaration(tokens, index):
    if tokens[index].text == "operator":
        return index + 1
    if tokens[index].text == "extern":
        return index + (1 if tokens[index + 1].kind == "string" else 0)
    depth = 0
    for at in range(index, len(tokens)):
        word = tokens[at].text
        depth += {"<": 1, "(": 1, "{": 1, "[": 1, ">": -1, ")": -1, "}": -1, "]": -1, ">>": -2}.get(word, 0)
        if depth == 0 and (word == ";" or (word == ">" and tokens[index].text == "template")):
            return at
    return len(tokens) - 1


def statement_end(tokens, index):
    """The index of the semicolon that ends the call or assignment which begins at the index; None for anything else."""
    if tokens[index].kind != "word" or tokens[index].text in NO_CALLS | DECLARATIONS:
        return None
    at = index + 1
    while at < len(tokens):
        word = tokens[at].text
        if word in ("::", ".", "->"):
            at += 2
        elif word in ("[", "("):
            at = closing(tokens, at) + 1
        else:
            break
    if at >= len(tokens) or not (tokens[at].text == ";" or re.fullmatch(r"\+\+|--|(<<|>>|[-+*/%&|^])?=", tokens[at].text)):
        return None
    while at < len(tokens) and tokens[at].text != ";":
        at = closing(tokens, at) + 1 if tokens[at].text in "([{" else at + 1
    if at >= len(tokens) or tokens[at - 1].text in ("delete", "default"):
        return None
    return at if at > index + 1 else None


def another_number(text, at):
    digits, suffix = re.fullmatch(r"(0[xX][\da-fA-F']+|[\d']+)(.*)", text, re.S).groups()
    if "." in suffix or "f" in suffix:
        return None
    value = int(digits.replace("'", ""), 0 if digits[:2] in ("0x", "0X") else 10)
    value += 1 if value == 0 or at % 2 == 0 else -1
    return (f"0x{value:X}" if digits[:2] in ("0x", "0X") else str(value)) + suffix


def is_room(tokens, index):
    """A number that is the length of an array in a declaration: programs would only have other room."""
    before, after = tokens[index - 1].text, tokens[index + 1].text
    return (before == "[" and after == "]" and tokens[index - 2].kind == "word" and
            tokens[index - 3].text not in ("=", "(", ",", "return", "[", "<", ".", "->") and
            tokens[index - 3].kind == "word") or after == ">" and before == ","


def cells(tokens, name):
    """For a table: each name of a constant and those that stand in its place in other rows."""
    if not name.endswith(".inc"):
        return {}
    places = {}
    for before, token in zip(tokens, tokens[1:]):
        if token.kind == "word" and re.match(r"k[A-Z]", token.text):
            places.setdefault(before.text, []).append(token.text)
    return {place: sorted(set(words)) for place, words in places.items() if len(words) > len(set(words))}


def changes(tokens, index, others, text):
    """Every change at a token: the end of what is replaced, and its replacement."""
    token, before = tokens[index], tokens[index - 1]
    spaced = text[token.at - 1] == " " and text[token.end:token.end + 1] in (" ", "\n")
    word = token.text
    if token.kind == "sign" and ((spaced and word in BINARY) or word in ANYWHERE):
        yield token.end, BINARY.get(word) or ANYWHERE[word]
    elif word == "!":
        yield token.end, ""
    elif token.kind == "word" and word in WORDS:
        yield token.end, WORDS[word]
    elif word in ("if", "while") and tokens[index + 1].text == "(":
        last = closing(tokens, index + 1)
        parts = [at for at in range(index + 1, last) if tokens[at].text == ";"]
        first = tokens[parts[-1] if parts else index + 1].end
        condition = text[first:tokens[last].at].strip()
        if not re.fullmatch(r"![^&|]*", condition):  # there the sign itself is dropped
            yield tokens[last].end, f"{text[token.at:first].rstrip()}{' ' if parts else ''}!({condition}))"
    elif word == "return" and tokens[index + 1].text not in (";", "{", "true", "false", "nullptr") and \
            not (tokens[index + 1].kind == "number" and tokens[index + 2].text == ";"):
        last = index
        while tokens[last].text != ";":
            last = closing(tokens, last) + 1 if tokens[last].text in "([{" else last + 1
        yield tokens[last].end, "return {};"
    elif token.kind == "number" and not is_room(tokens, index):
        number = another_number(word, zlib.crc32(text[text.rfind("\n", 0, token.at) + 1:token.end].encode()))
        if number is not None:
            yield token.end, number
    elif token.kind == "string":
        yield token.end, '"x' + word[1:]
    elif token.kind == "char":
        yield token.end, f"char({word} + 1)"
    elif token.kind == "word" and re.fullmatch(r"[\dA-F]{4}", word) and others is not None:
        yield token.end, f"{int(word, 16) ^ 1:04X}"
    elif token.kind == "word" and word in (others or {}).get(before.text, ()):
        row = others[before.text]
        if len(row) > 1:
            yield token.end, row[(row.index(word) + 1) % len(row)]
    if before.text in (";", "{", "}", ")", "else"):
        last = statement_end(tokens, index)
        if last is not None:
            yield tokens[last].end, ";"


class Mutant:
    def __init__(self, name, text, at, end, replacement, nth):
        self.name, self.at, self.end, self.replacement = name, at, end, replacement
        self.line = text.count("\n", 0, at) + 1
        self.start = text.rfind("\n", 0, at) + 1
        self.row = text[self.start:text.find("\n", at)].strip()
        self.removed = " ".join(text[at:end].split())
        self.nth = nth

    def apply(self, text):
        return text[:self.at] + self.replacement + text[self.end:]

    @property
    def change(self):
        """What the change does, independent of where in the file its line is."""
        return f"{self.removed} -> {' '.join(self.replacement.split()) or 'nothing'}"

    @property
    def identity(self):
        return "\t".join((self.name, self.row, self.change) + ((str(self.nth),) if self.nth > 1 else ()))


def mutants_of(name, text):
    tokens = tokens_of(text)
    others = cells(tokens, name) if name.endswith(".inc") else None
    seen = {}
    index = 1
    while index < len(tokens) - 1:
        if tokens[index].text in DECLARATIONS:
            index = end_of_declaration(tokens, index) + 1
            continue
        if tokens[index].text == "[[":
            while tokens[index].text != "]]":
                index += 1
        for end, replacement in changes(tokens, index, others, text):
            mutant = Mutant(name, text, tokens[index].at, end, replacement, 1)
            alike = mutant.identity
            mutant.nth = seen[alike] = seen.get(alike, 0) + 1
            yield mutant
        index += 1
