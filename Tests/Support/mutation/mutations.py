"""Finds what can be changed in a C++ source, and writes a source in which each change can be switched on.

Every mutation is a pair of insertions around an extent of the text, or one insertion after an operator, so
that all of them fit into one source and lines keep their numbers. See Mutation.h for what is inserted.
"""

import re
from dataclasses import dataclass

OPENING, CLOSING = '([{', ')]}'
COMPARISONS = {
    '<': ('Less', '<=', '>'), '<=': ('LessOrEqual', '<', '>'),
    '>': ('Greater', '>=', '>'), '>=': ('GreaterOrEqual', '>', '>'),
    '==': ('Equal', '!=', '=='), '!=': ('NotEqual', '==', '!='),
}
LOWEST = (r'\?', r'(?<!:):(?!:)', ',', ';')
LOGICAL = (r'\|\|', '&&') + LOWEST
ADDITIVE = (r' <= ', r' >= ', r' < ', r' > ', '==', '!=', r' \+ ', r' - ', ' << ', ' >> ', r' \| ', ' & ') + LOGICAL
FACTORS = (r' \* ', ' / ', ' % ') + ADDITIVE
NO_STATEMENT = re.compile(
    r'(return|if|for|while|else|switch|case|break|continue|using|namespace|struct|class|static|const|constexpr'
    r'|auto|explicit|virtual|default|typedef|enum|public|private|protected|Q_UNUSED|Q_GLOBAL_STATIC|Q_OBJECT'
    r'|Q_DISABLE_COPY|Q_DECLARE\w*|QT_\w+|template|inline)\b')
STATEMENT = re.compile(
    r'(Q_EMIT |delete |\+\+|--)?[A-Za-z_]\w*((::|\.|->)[A-Za-z_]\w*|\([^()]*\)|\[[^\[\]]*\])*'
    r'\s*(\(|=(?!=)|\+=|-=|\|=|<<|;|\+\+|--)')
DECLARATION = re.compile(r'\s*(const\s+)?[\w:<>]+\s*[*&]*\s*(const\s+)?\w+\s*=[^=]')


@dataclass
class Mutation:
    start: int
    end: int
    prefix: str
    suffix: str
    before: str
    after: str
    kind: str
    line: int = 0
    number: int = 0


def masked(text):
    """The text with comments, directives and the insides of literals blanked out, of the same length."""
    pattern = re.compile(r'//[^\n]*|/\*.*?\*/|"(?:\\.|[^"\\\n])*"|\'(?:\\.|[^\'\\\n])+\'|^[ \t]*#(?:\\\n|[^\n])*',
                         re.S | re.M)

    def blank(match):
        found = match.group()
        if found[0] in '"\'':
            return found[0] + '_' * (len(found) - 2) + found[-1]
        return re.sub(r'[^\n]', ' ', found)

    return pattern.sub(blank, text)


class Source:
    def __init__(self, text):
        self.text = re.sub(r'^constexpr (?=const char|unsigned|int|double|qreal|float|quint|qint)',
                           lambda match: 'const     ' if 'char' not in match.string[match.end():match.end() + 10]
                           else ' ' * 10, text, flags=re.M)
        self.mask = masked(self.text)
        self.mutations = []

    def mutate(self):
        self.conditions()
        self.operands()
        self.comparisons()
        self.arithmetic()
        self.literals()
        self.statements()
        self.results()
        self.drop_crossing()
        for mutation in self.mutations:
            mutation.line = self.text.count('\n', 0, mutation.start) + 1
        self.mutations.sort(key=lambda mutation: (mutation.start, mutation.end))
        return self.mutations

    def written(self, mutations):
        insertions = []
        for order, mutation in enumerate(mutations):
            prefix = mutation.prefix.replace('@', str(mutation.number))
            insertions.append((mutation.start, 1, -mutation.end, order, prefix))
            if mutation.suffix:
                insertions.append((mutation.end, 0, -mutation.start, -order, mutation.suffix))
        pieces, last = [], 0
        for position, *_, inserted in sorted(insertions):
            pieces += [self.text[last:position], inserted]
            last = position
        return ''.join(pieces) + self.text[last:]

    def add(self, start, end, prefix, suffix, before, after, kind):
        def short(text):
            text = ' '.join(text.split())
            return text if len(text) <= 110 else text[:107] + '…'
        self.mutations.append(Mutation(start, end, prefix, suffix, short(before), short(after), kind))

    def wrap(self, start, end, prefix, suffix, after, kind):
        while start < end and self.mask[start].isspace():
            start += 1
        while end > start and self.mask[end - 1].isspace():
            end -= 1
        before = self.text[start:end]
        if before:
            self.add(start, end, prefix, suffix, before, after.replace('@', before), kind)

    def closing(self, start):
        """The position of the bracket that closes the one at start."""
        depth = 0
        for position in range(start, len(self.mask)):
            depth += (self.mask[position] in OPENING) - (self.mask[position] in CLOSING)
            if depth == 0:
                return position
        return len(self.mask)

    def forward(self, start, stops):
        """Where the operand that begins at start ends."""
        stop = re.compile('|'.join(stops))
        position = start
        while position < len(self.mask):
            if self.mask[position] in CLOSING:
                return position
            if self.mask[position] in OPENING:
                position = self.closing(position) + 1
                continue
            if stop.match(self.mask, position):
                return position
            position += 1
        return position

    def backward(self, end, stops):
        """Where the operand that ends at end begins, and the text that stopped the search."""
        stop = re.compile('(?:' + '|'.join(stops) + r'|\breturn\b|(?<![=!<>+|-])=(?!=))')
        depth, position = 0, end
        while position > 0:
            character = self.mask[position - 1]
            if character in CLOSING:
                depth += 1
            elif character in OPENING:
                if depth == 0:
                    return position, character
                depth -= 1
            elif depth == 0:
                for length in (6, 2, 1):
                    found = stop.fullmatch(self.mask, position - length, position) if position >= length else None
                    if found:
                        return position, found.group()
            position -= 1
        return 0, ''

    def conditions(self):
        for match in re.finditer(r'\b(if|while)\s*\(', self.mask):
            start, end = match.end(), self.closing(match.end() - 1)
            content = self.mask[start:end]
            if ';' not in content and not DECLARATION.match(content):
                self.wrap(start, end, 'Mutation::negated(@, ', ')', '!(@)', 'condition')
        for match in re.finditer(r'(?<=\s)\?(?=\s)', self.mask):
            start, _ = self.backward(match.start(), LOWEST)
            self.wrap(start, match.start(), 'Mutation::negated(@, ', ')', '!(@)', 'condition')

    def operands(self):
        for match in re.finditer(r'(?<=\s)(&&|\|\|)(?=\s)', self.mask):
            conjunction = match.group() == '&&'
            stops = LOGICAL if conjunction else (r'\|\|',) + LOWEST
            prefix = '(Mutation::on(@) || (' if conjunction else '(!Mutation::on(@) && ('
            after = 'true' if conjunction else 'false'
            self.wrap(match.end(), self.forward(match.end(), stops), prefix, '))', after, 'operand')
            start, stop = self.backward(match.start(), stops)
            if stop != match.group():
                self.wrap(start, match.start(), prefix, '))', after, 'operand')

    def comparisons(self):
        for match in re.finditer(r'(?<=\s)(<=|>=|<|>|==|!=)(?=\s)', self.mask):
            operator = match.group()
            if operator in ('==', '!=') and self.is_whole_condition(match):
                continue
            name, other, closing = COMPARISONS[operator]
            line = self.line_around(match.start())
            end = match.end()
            self.add(end, end, f' Mutation::{name}{{@}} {closing}', '', f'{operator}   in: {line}', other, 'comparison')

    def is_whole_condition(self, match):
        start, _ = self.backward(match.start(), LOGICAL)
        end = self.forward(match.end(), LOGICAL)
        return any(m.kind == 'condition' and start <= m.start and m.end <= end for m in self.mutations)

    def line_around(self, position):
        start = self.text.rfind('\n', 0, position) + 1
        return self.text[start:self.text.find('\n', position)]

    def arithmetic(self):
        for match in re.finditer(r'(?<=[\w\])] )[-+](?= )|(?<=\n)\s*[-+](?= )', self.mask):
            end = self.forward(match.end() + 1, ADDITIVE)
            self.wrap(match.end(), end, 'Mutation::minus(@, ', ')', '-(@)', 'arithmetic')
        for match in re.finditer(r'(?<=[\w\])] )[*/%](?= )', self.mask):
            end = self.forward(match.end() + 1, FACTORS)
            self.wrap(match.end(), end, 'Mutation::one(@, ', ')', '1', 'arithmetic')

    def literals(self):
        for match in re.finditer(r'(?<![\w.\'])\d+(\.\d+)?(e\d+)?[uUlLfF]*(?![\w.\'])', self.mask):
            line = self.line_around(match.start())
            if not re.match(r'\s*(case|enum|template|static_assert|using)\b', line):
                self.wrap(*match.span(), 'Mutation::nextTo(@, ', ')', '@ + 1', 'literal')
        for match in re.finditer(r'\b(true|false)\b', self.mask):
            after = 'false' if match.group() == 'true' else 'true'
            self.wrap(*match.span(), 'Mutation::negated(@, ', ')', after, 'literal')
        taken = []
        for match in re.finditer(r'\b(QStringLiteral|QLatin1String)\("', self.mask):
            end = self.closing(match.end() - 2) + 1
            taken.append((match.start(), end))
            self.wrap(match.start(), end, f'(Mutation::on(@) ? {match.group(1)}("#") : ', ')',
                      f'{match.group(1)}("#")', 'literal')
        for match in re.finditer(r'"_*"', self.mask):
            if not any(start <= match.start() < end for start, end in taken):
                self.wrap(*match.span(), 'Mutation::text(@, ', ')', '"#"', 'literal')

    def statements(self):
        previous = ''
        for match in re.finditer(r'[^\n]*\n', self.mask):
            line = match.group().strip()
            if line and previous.endswith(tuple('{};):')) | previous.endswith('else') \
                    and STATEMENT.match(line) and not NO_STATEMENT.match(line):
                start = match.start() + len(match.group()) - len(match.group().lstrip())
                end = self.statement_end(start)
                if end:
                    self.wrap(start, end, '{ if (!Mutation::on(@)) { ', ' } }', '(removed)', 'statement')
            previous = line or previous

    def statement_end(self, start):
        assigned, position = False, start
        while position < len(self.mask):
            character = self.mask[position]
            if character == ';':
                return position + 1
            if character == '{' and not assigned or character in CLOSING:
                return None
            assigned = assigned or character == '='
            position = self.closing(position) + 1 if character in OPENING else position + 1
        return None

    def results(self):
        for match in re.finditer(r'\breturn\s+(?=[^;{\s])', self.mask):
            end = self.forward(match.end(), (';',))
            expression = self.mask[match.end():end].strip()
            if self.returns_reference(match.start()):
                continue
            if expression not in ('true', 'false', 'nullptr', '*this') and not re.fullmatch(r'\d+', expression):
                self.wrap(match.end(), end, 'Mutation::result(@, ', ')', 'nothing, or the opposite', 'result')

    def returns_reference(self, position):
        heads = re.findall(r'^\w[^\n;]*\([^\n;]*$', self.mask[:position], re.M)
        return bool(heads) and bool(re.match(r'[^(]*&\s*[\w:~]+\(', heads[-1]))

    def drop_crossing(self):
        kept = []
        for one in sorted(self.mutations, key=lambda mutation: (mutation.start, -mutation.end)):
            if not any(other.start < one.start < other.end < one.end for other in kept):
                kept.append(one)
        self.mutations = kept
