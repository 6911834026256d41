# SPDX-License-Identifier: MIT
"""The mutants that can be made of a source, and the choice of those to try."""
import re

from tokens import KEYWORDS, tokenize

_OPERATORS = {
    '==': '!=', '!=': '==', '<': '<=', '<=': '<', '>': '>=', '>=': '>', '&&': '||', '||': '&&',
    '+': '-', '-': '+', '*': '/', '/': '*', '%': '/', '<<': '>>', '>>': '<<', '&': '|', '|': '&',
    '+=': '-=', '-=': '+=', '++': '--', '--': '++',
}  # yapf: disable
_EVERYWHERE = frozenset(('==', '!=', '+=', '-=', '++', '--'))  # no other meaning, or a binary one
_CONVERSIONS = {'u': 'x', 'd': 'x', 'x': 'u', 'lu': 'x', 'llx': 'x'}


class Mutant:
    """A source with one change: `text` in place of everything from `begin` to `end`."""

    def __init__(self, path, source, kind, begin, end, text):
        self.path = path
        self.kind = kind
        self.begin = begin
        self.end = end
        self.text = text
        self.was = source[begin:end]
        self.line = source.count('\n', 0, begin) + 1
        line_begin = source.rfind('\n', 0, begin) + 1
        changed = self.apply(source)
        self.before = _first_line(source, line_begin)
        self.after = _first_line(changed, line_begin)
        alike = [each.strip() == self.before for each in source.split('\n')]
        self.turn = f' | {sum(alike[:self.line])} of {sum(alike)}' if sum(alike) > 1 else ''

    def apply(self, source):
        return source[:self.begin] + self.text + source[self.end:]

    def key(self):
        """Identifies the mutant as long as its line is the same. Equal lines are counted."""
        return f'{self.path} | {self.before} | {self.after}{self.turn}'


def _first_line(source, begin):
    end = source.find('\n', begin)
    return source[begin:end].strip()


class Source:
    """A source file, and the mutants that can be made of it."""

    def __init__(self, path, text, enumerations, values_missing):
        """`enumerations` are those of GenTL, each a list of its enumerators. `values_missing` says
        how many conversions of a format, which it knows by name, get no value."""
        self.path = path
        self.text = text
        self.tokens = tokenize(text)
        self.enumerations = enumerations
        self.values_missing = values_missing
        self.mutants = []
        for make in (self._texts, self._operators, self._constants, self._steps, self._conditions,
                      self._arguments, self._operands, self._calls):
            make()
        self.mutants.sort(key=lambda mutant: (mutant.begin, mutant.end, mutant.kind, mutant.text))
        unique = {(each.begin, each.end, each.text): each for each in reversed(self.mutants)}
        self.mutants = sorted(unique.values(), key=lambda each: (each.begin, each.end, each.text))

    def _add(self, kind, begin, end, text):
        if self.text[begin:end] != text:
            self.mutants.append(Mutant(self.path, self.text, kind, begin, end, text))

    def _at(self, index):
        return self.tokens[index].text if 0 <= index < len(self.tokens) else ''

    def _between(self, first, last):
        return self.text[self.tokens[first].begin:self.tokens[last].end]

    # Changes a letter of a text, or a conversion of a format.
    def _texts(self):
        for index, token in enumerate(self.tokens):
            if token.kind not in ('string', 'char'):
                continue
            inner = token.text.find(token.text[-1]) + 1
            content = token.text[inner:-1]
            spoken = re.sub(r'%l*[a-z]|\\.|\$\(', lambda match: '\0' * len(match.group()), content)
            places = [place for place, letter in enumerate(spoken) if letter.isalnum()]
            places = places or [place for place, letter in enumerate(spoken) if letter != '\0']
            if places:
                place = places[len(places) // 2]
                begin = token.begin + inner + place
                self._add('text', begin, begin + 1, _other_letter(content[place]))
            for match in re.finditer(r'%(llx|lu|[udx])', content):
                begin = token.begin + inner + match.start(1)
                if self._has_no_value(index, begin):
                    continue  # 0 looks the same in all conversions
                self._add('conversion', begin, begin + len(match.group(1)),
                          _CONVERSIONS[match.group(1)])

    def _has_no_value(self, index, begin):
        """Whether the conversion that begins there, in a format `kName = "...";`, gets no value."""
        first = last = index
        while first > 0 and self.tokens[first - 1].kind == 'string':
            first -= 1
        while last + 1 < len(self.tokens) and self.tokens[last + 1].kind == 'string':
            last += 1
        following = re.findall(r'%l*[a-z]', self.text[begin:self.tokens[last].end])
        return self._at(first - 1) == '=' and \
            self.values_missing.get(self._at(first - 2), 0) > len(following)

    def _operators(self):
        for index, token in enumerate(self.tokens):
            if token.kind == 'name' and token.text in ('true', 'false'):
                self._add('truth', token.begin, token.end,
                          'false' if token.text == 'true' else 'true')
            if token.kind != 'sign' or self._at(index - 1) == 'operator':
                continue
            if token.text == '!':
                self._add('condition', token.begin, token.end, '')
            elif token.text in _OPERATORS:
                spaced = self.text[token.begin - 1].isspace() and self.text[token.end].isspace()
                if spaced or token.text in _EVERYWHERE:
                    self._add('operator', token.begin, token.end, _OPERATORS[token.text])

    def _constants(self):
        for token in self.tokens:
            match = re.fullmatch(r'(0x[0-9A-Fa-f]+|\d+)([uUlL]*)', token.text)
            if token.kind == 'number' and match:
                digits, suffix = match.groups()
                value = int(digits, 0) + 1
                other = f'0x{value:X}' if digits.startswith('0x') else str(value)
                self._add('constant', token.begin, token.end, other + suffix)

    # Leaves out a call, an assignment, or an early return. Statements follow an early return, so no
    # function ends without a value.
    def _steps(self):
        for index, token in enumerate(self.tokens):
            if self._at(index - 1) not in (';', '{', '}') or self._at(index) in ('}', ';'):
                continue
            end = self._statement_end(index)
            if end is None:
                continue
            first, second = self._at(index), self._at(index + 1)
            if first == 'continue' or first == 'break' and not self._ends(end, 'switch') or \
                    first == 'return' and (second == ';' or self._is_early(end)):
                self._add('step', token.begin, self.tokens[end].begin, '')
            elif token.is_name() and self._is_call_or_assignment(index, end):
                self._add('step', token.begin, self.tokens[end].begin, '')

    def _statement_end(self, index):
        while index < len(self.tokens):
            token = self.tokens[index]
            if token.text == ';':
                return index
            if token.text in ('}', ')', ']') or token.text == '{' and self._at(index - 1) != ']' \
                    and self._at(index - 1) not in ('=', '(', ',', 'return'):
                return None
            index = token.partner + 1 if token.partner is not None else index + 1
        return None

    def _is_early(self, end):
        """Whether it is the last statement of an if's block, and something follows that."""
        return self._ends(end, 'if') and self._at(end + 2) not in ('}', '', 'else')

    def _ends(self, end, keyword):
        """Whether the statement is the last one of the block that belongs to the keyword."""
        closing = end + 1
        condition = self.tokens[closing].partner - 1 if self._at(closing) == '}' else -1
        return self._at(condition) == ')' and \
            self._at(self.tokens[condition].partner - 1) == keyword

    def _is_call_or_assignment(self, index, end):
        while index < end:  # name ((::|.|->) name | (...) | [...])*, then nothing or an assignment
            token = self.tokens[index]
            if token.text in ('=', '+=', '-='):
                return self._at(index + 1) not in ('delete', 'default')
            if token.text in ('(', '['):
                index = token.partner
                if index + 1 == end:
                    return token.text == '('
            elif token.is_name() and self.tokens[index + 1].kind == 'name':
                return False
            elif not token.is_name() and token.text not in ('::', '.', '->'):
                return False
            index += 1
        return False

    # Negates a condition, unless a changed operator would do the same.
    def _conditions(self):
        for index, token in enumerate(self.tokens):
            if token.text != 'if' or self._at(index + 1) != '(':
                continue
            first, last = index + 2, self.tokens[index + 1].partner - 1
            words = [self._at(place) for place in range(first, last + 1)]
            joined = '&&' in words or '||' in words
            if '=' in words or not joined and ('==' in words or '!=' in words or words[0] == '!'):
                continue
            self._add('condition', self.tokens[first].begin, self.tokens[last].end,
                      f'!({self._between(first, last)})')

    # Swaps two arguments of a call, or passes one twice.
    def _arguments(self):
        for index, token in enumerate(self.tokens):
            is_call = token.text == '(' and self.tokens[index - 1].is_name() and \
                not self.tokens[index - 2].is_name() and self._at(index - 2) not in KEYWORDS - {'return'}
            is_list = token.text == '{' and self._at(index - 1) == 'return'
            if not (is_call or is_list) or token.partner is None:
                continue
            arguments = self._split(index)
            if is_call and self._is_definition(index) or \
                    any(self._declares(*argument) for argument in arguments):
                continue
            for left, right in zip(arguments, arguments[1:]):
                if is_call and (self._is_fixed(*left) or self._is_fixed(*right)):
                    continue
                commutes = re.search(r'_(add|and|or)_|^(min|max|TextsOf)$', self._at(index - 1))
                one, other = self._between(*left), self._between(*right)
                gap = self.text[self.tokens[left[1]].end:self.tokens[right[0]].begin]
                place = self.tokens[left[0]].begin, self.tokens[right[1]].end
                if not commutes:
                    self._add('arguments', *place, f'{other}{gap}{one}')
                self._add('operand', *place, f'{one}{gap}{one}')

    def _is_fixed(self, first, last):
        """Whether it's a text, a function, or a pointer to a member: nothing can replace it."""
        return self.tokens[first].kind == 'string' or self._at(first) in ('[', '&') or \
            self._at(last) in ('GetRootLogger', 'logger') or self._at(first) == 'CallLogger' or \
            self._at(first) in ('line', 'report') and self._at(first + 1) == '::'

    def _is_definition(self, opening):
        return self._at(self.tokens[opening].partner + 1) in ('{', 'const', 'noexcept')

    def _split(self, opening):
        parts, first, index = [], opening + 1, opening + 1
        closing = self.tokens[opening].partner
        while index <= closing:
            token = self.tokens[index]
            if index == closing or token.text == ',':
                if index > first:
                    parts.append((first, index - 1))
                first = index + 1
            elif token.partner is not None:
                index = token.partner
            index += 1
        return parts

    def _declares(self, first, last):
        """Whether it's a parameter, not an argument."""
        names = [self.tokens[place].kind == 'name' for place in range(first, last + 1)]
        adjoining = any(one and other for one, other in zip(names, names[1:]))
        return adjoining or self._at(last) in ('&', '*', '&&') or \
            any(self._at(place) in ('&', '*') and self._at(place + 1) and
                self.tokens[place - 1].kind == 'name' and self.tokens[place + 1].kind == 'name' and
                self.text[self.tokens[place].begin - 1] != ' ' for place in range(first + 1, last))

    # Uses another member of the same object, or another enumerator of the same enumeration.
    def _operands(self):
        members = [index for index, token in enumerate(self.tokens)
                   if token.is_name() and self._at(index - 1) in ('.', '->', '::') and
                   self.tokens[index - 2].is_name() and self._at(index + 1) != '(' and
                   self._at(index - 2) not in ('std', 'ranges', 'log4cpp', 'platform', 'backend',
                                               'detail')]
        for index in members:
            others = [self._at(other) for other in members
                      if self._at(other - 2) == self._at(index - 2)]
            self._add_sibling('operand', index, others)
        for index, token in enumerate(self.tokens):
            if self._at(index + 1) != '=':  # not its definition
                for enumerators in self.enumerations:
                    self._add_sibling('operand', index, enumerators)

    # Calls another function with a similar name.
    def _calls(self):
        called = [index for index, token in enumerate(self.tokens)
                  if token.is_name() and self._at(index + 1) == '(' and
                  not self.tokens[index - 1].is_name() and not self._is_definition(index + 1) and
                  self._at(index - 1) not in KEYWORDS - {'return'} | {'*', '&', '~'}]
        for index in called:
            words, count = _words(self._at(index)), len(self._split(index + 1))
            others = [self._at(other) for other in called
                      if len(words) > 1 and len(self._split(other + 1)) == count and
                      (_words(self._at(other))[0] == words[0] or
                       _words(self._at(other))[-1] == words[-1])]
            self._add_sibling('call', index, others)

    def _add_sibling(self, kind, index, others):
        """Uses the next one in the file in place of this one."""
        token = self.tokens[index]
        distinct = list(dict.fromkeys(others))
        if len(distinct) > 1 and token.text in distinct:
            other = distinct[(distinct.index(token.text) + 1) % len(distinct)]
            self._add(kind, token.begin, token.end, other)


def values_missing(texts):
    """For each format by name, how many of its conversions get no value where it is used."""
    missing = {}
    for text in texts:
        tokens = tokenize(text)
        for index in range(2, len(tokens)):
            if tokens[index - 1].text == '::' and tokens[index - 2].text in ('line', 'report'):
                end = index
                while end < len(tokens) and tokens[end].text not in (')', ']', '}', ';'):
                    end = (tokens[end].partner or end) + 1
                count = sum(token.text == 'kNoValue' for token in tokens[index:end])
                name = tokens[index].text
                missing[name] = max(count, missing.get(name, 0))
    return missing


def enumerations(header):
    """The enumerators of each enumeration in a header."""
    tokens = tokenize(header)
    found = []
    for index, token in enumerate(tokens):
        if token.text == 'enum':
            opening = next(i for i in range(index, len(tokens)) if tokens[i].text == '{')
            found.append([tokens[i].text for i in range(opening, tokens[opening].partner)
                          if tokens[i + 1].text == '='])
    return found


def _words(name):
    return re.findall(r'[A-Z]+(?![a-z])|[A-Z]?[a-z0-9]+', name) or [name]


def _other_letter(letter):
    if letter.isalpha():
        return {'z': 'a', 'Z': 'A'}.get(letter) or chr(ord(letter) + 1)
    if letter.isdigit():
        return '0' if letter == '9' else chr(ord(letter) + 1)
    return '~' if letter != '~' else '!'


def plan(sources, total):
    """About `total` mutants, spread over files and kinds. The same for the same sources."""
    weights = {path: len(source.mutants)**0.5 for path, source in sources.items() if source.mutants}
    scale = total / sum(weights.values())
    planned = []
    for number, path in enumerate(sorted(weights)):
        mutants = sources[path].mutants
        wanted = min(len(mutants), max(3, round(scale * weights[path])))
        planned += _spread_over_kinds(mutants, wanted, number)
    return planned


def _spread_over_kinds(mutants, wanted, turn):
    kinds = {}
    for mutant in mutants:
        kinds.setdefault(mutant.kind, []).append(mutant)
    shares = dict.fromkeys(kinds, 0)
    order = sorted(kinds)
    order = order[turn % len(order):] + order[:turn % len(order)]
    while sum(shares.values()) < wanted:
        for kind in order:
            if shares[kind] < len(kinds[kind]) and sum(shares.values()) < wanted:
                shares[kind] += 1
    chosen = [mutant for kind in order for mutant in sample(kinds[kind], shares[kind])]
    return sorted(chosen, key=lambda mutant: (mutant.begin, mutant.end, mutant.text))


def sample(items, count):
    """`count` of the items, spread evenly."""
    return [items[(2 * i + 1) * len(items) // (2 * count)] for i in range(count)]
