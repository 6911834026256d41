# SPDX-License-Identifier: MIT
"""C++ tokens with their places, and which bracket closes which."""
import re

_TOKEN = re.compile(
    r'''
    (?P<comment>//[^\n]*|/\*.*?\*/)
  | (?P<directive>^[ \t]*\#(?:\\\n|[^\n])*)
  | (?P<raw>(?:u8|[uUL])?R"(?P<mark>[^(\s]*)\(.*?\)(?P=mark)")
  | (?P<string>(?:u8|[uUL])?"(?:[^"\\\n]|\\.)*")(?:sv|s)?
  | (?P<char>'(?:[^'\\\n]|\\.)+')
  | (?P<number>\d(?:[\w.]|'\d)*)
  | (?P<name>[A-Za-z_]\w*)
  | (?P<sign><=>|<<=|>>=|\.\.\.|->\*|::|->|\+\+|--|<<|>>|<=|>=|==|!=|&&|\|\||[-+*/%&|^]=|[^\s\w])
    ''',
    re.VERBOSE | re.MULTILINE | re.DOTALL)

_CLOSING = {'(': ')', '[': ']', '{': '}'}
KEYWORDS = frozenset(
    '''alignas auto bool break case catch char class const consteval constexpr continue decltype
    default delete do double else enum explicit extern float for friend if inline int long
    namespace new noexcept operator private protected public requires return short signed sizeof
    static static_assert static_cast struct switch template this throw try typedef typename union
    unsigned using virtual void volatile while reinterpret_cast const_cast'''.split())


class Token:
    def __init__(self, kind, text, begin):
        self.kind = kind
        self.text = text
        self.begin = begin
        self.end = begin + len(text)
        self.partner = None  # index of the bracket that closes or opens this one

    def is_name(self):
        return self.kind == 'name' and self.text not in KEYWORDS


def tokenize(source):
    """The tokens of the code, without comments, directives, attributes, and static assertions."""
    tokens = []
    for match in _TOKEN.finditer(source):
        kind = match.lastgroup if match.lastgroup != 'mark' else 'raw'
        if kind not in ('comment', 'directive', 'raw'):
            tokens.append(Token(kind, match.group(kind), match.start(kind)))
    _pair_brackets(tokens)
    kept = [token for index, token in enumerate(tokens) if not _is_apart(tokens, index)]
    _pair_brackets(kept)
    return kept


def _pair_brackets(tokens):
    open_brackets = []
    for index, token in enumerate(tokens):
        token.partner = None
        if token.kind != 'sign':
            continue
        if token.text in _CLOSING:
            open_brackets.append(index)
        elif token.text in _CLOSING.values():
            if open_brackets and _CLOSING[tokens[open_brackets[-1]].text] == token.text:
                token.partner = open_brackets.pop()
                tokens[token.partner].partner = index


def _is_apart(tokens, index):
    return any(begin <= index <= end for begin, end in _apart(tokens))


def _apart(tokens):
    """The parts that don't change what the program does."""
    cached = getattr(tokens[0], 'apart', None) if tokens else []
    if cached is not None:
        return cached
    parts = []
    for index, token in enumerate(tokens):
        following = tokens[index + 1] if index + 1 < len(tokens) else None
        if following is None or token.partner is None and following.partner is None:
            if following is not None and token.text == 'extern' and following.kind == 'string':
                parts.append((index, index + 1))
            continue
        if token.text == '[' and following.text == '[':
            parts.append((index, token.partner))
        elif token.text in ('static_assert', '_Static_assert'):
            parts.append((index, following.partner + 1))
    tokens[0].apart = parts
    return parts
