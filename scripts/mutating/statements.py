"""The statements of C++ functions, found in blanked text (linting.source.blanked)."""
import re
from dataclasses import dataclass

from linting import source

_LABEL = re.compile(r"\s*(?:case\b[^;{}?]*?[^:]|default|public|private|protected|\w+):(?!:)\s*")
_BRANCH = re.compile(r"\s*(?:(?:if(?:\s+constexpr)?|for|while|switch|Q_FOREVER)\s*(?=\()|else\b|do\b)")
_INITIALISER = re.compile(r"\)[^{}]*(?<!:):(?!:)[^{}]*[\w>]\s*$|,\s*\w+\s*$")
_BODIES = ("function", "lambda", "control")


@dataclass(frozen=True)
class Statement:
    """[start, end) with its semicolon. `controlled`: the whole body of an if, else or loop. `block`: the place of the brace
    around it. `early`: more of its function can follow where it stands in a branch."""

    start: int
    end: int
    block: int
    controlled: bool
    early: bool

    def text(self, code):
        return code[self.start:self.end]


def closing(code, position):
    """The position after the parenthesis that closes the one at position."""
    depth = 0
    for index in range(position, len(code)):
        depth += {"(": 1, ")": -1}.get(code[index], 0)
        if depth == 0:
            return index + 1
    return len(code)


def without_directives(code):
    """The text with preprocessor lines as spaces."""
    return source._PREPROCESSOR.sub(lambda match: re.sub(r"[^\n]", " ", match.group(0)), code)


def _begin(code, start, end):
    """Where a statement itself begins, after labels and the heads of what controls it, and whether any controls it."""
    controlled = False
    while True:
        branch = _BRANCH.match(code, start, end)
        if branch:
            start = closing(code, branch.end()) if code[branch.end():branch.end() + 1] == "(" else branch.end()
            controlled = True
            continue
        label = _LABEL.match(code, start, end)
        if not label:
            break
        start = label.end()
    while start < end and code[start].isspace():
        start += 1
    return start, controlled


def _kind(code, start, position, in_parentheses):
    """What the brace at position begins, as in linting.source, where heads that control and initialisers are in the way."""
    begin, controlled = _begin(code, start, position)
    head = code[begin:position]
    if in_parentheses:
        return "lambda" if source._kind(head) == "lambda" else "other"
    if not head.strip():
        return "control" if controlled or _is_block(code, start) else "other"
    kind = source._kind(head)
    return "other" if kind == "function" and _INITIALISER.search(head) else kind


def _is_block(code, start):
    """Whether a brace at the beginning of a statement stands for itself: what stands before it has ended."""
    before = code[:start].rstrip()
    return not before or before[-1] in ";{}:"


def statements(code):
    """Every statement that ends with a semicolon, in the order of the ends. Blanked text without directives."""
    stack = []  # (kind, depth and start outside, place of the brace)
    start = depth = 0
    for position, char in enumerate(code):
        if char in "([":
            depth += 1
        elif char in ")]":
            depth -= 1
        elif char == "{":
            kind = _kind(code, start, position, depth > 0)
            stack.append((kind, depth, start, position))
            start, depth = position + 1, 0
        elif char == "}":
            kind, depth, outside, _ = stack.pop() if stack else ("type", 0, 0, 0)
            start = outside if kind in ("lambda", "other") else position + 1
        elif char == ";" and depth <= 0:
            if stack and stack[-1][0] in _BODIES:
                begin, controlled = _begin(code, start, position)
                yield Statement(begin, position + 1, stack[-1][3], controlled, controlled or stack[-1][0] == "control")
            start = position + 1
