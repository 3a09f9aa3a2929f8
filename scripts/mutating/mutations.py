"""What can be changed in a C++ source file, one change at a time, so that some test should notice."""
import re
from dataclasses import dataclass

from linting import source
from mutating.statements import closing, statements, without_directives

KINDS = ("operator", "constant", "order", "return", "call")


@dataclass(frozen=True)
class Mutation:
    """text[start:end] becomes replacement."""

    kind: str
    start: int
    end: int
    replacement: str

    def apply(self, text):
        return text[:self.start] + self.replacement + text[self.end:]

    def describe(self, text):
        if self.kind in ("return", "call"):
            return f"without `{_short(text[self.start:self.end])}`"
        if self.kind == "order":
            return f"in the other order: `{_short(text[self.start:self.end])}`"
        first, last = text.rfind("\n", 0, self.start) + 1, text.find("\n", self.end)
        end = last if last >= 0 else len(text)
        change = f"[{_short(text[self.start:self.end])} -> {_short(self.replacement)}]"
        return f"{text[first:self.start].lstrip()[-60:]}{change}{text[self.end:end][:60]}"


def _short(text):
    return " ".join(text.split())


_SWAPS = {
    "==": "!=", "!=": "==", "<": "<=", "<=": "<", ">": ">=", ">=": ">", "&&": "||", "||": "&&", "+": "-", "-": "+",
    "*": "/", "/": "*", "%": "*", "&": "|", "|": "&", "+=": "-=", "-=": "+=", "*=": "/=", "/=": "*=", "|=": "&=",
    "&=": "|=",
}
# The formatter puts spaces around what takes two operands, and around nothing else that looks like it.
_BINARY = re.compile(r"(?<=[\s])(" + "|".join(re.escape(o) for o in sorted(_SWAPS, key=len, reverse=True)) + r")(?=\s)")
_TEXT_BEFORE, _TEXT_AFTER = re.compile(r"[\"'](?:_\w+)?\s*$"), re.compile(r"\s*\w{0,2}[\"']")  # has no difference
_STEP = re.compile(r"\+\+|--")
_NOT = re.compile(r"(?<=[\s(\[{!,])!(?=[\w(:])")
_CONDITION = re.compile(r"\b(?:if|while)\s*\(")
_NUMBER = re.compile(r"(?<![\w.'])(0[xX][0-9a-fA-F']+|[0-9][0-9']*(?:\.[0-9]+)?)(?=[A-Za-z_]*\b)")
_TRUTH = re.compile(r"\b(true|false)\b")
_COMPILE_TIME = re.compile(r"\b(?:static_assert|noexcept|alignas|requires|decltype)\s*(?=\()")
_ATTRIBUTE = re.compile(r"\[\[.*?\]\]", re.S)
_PURE = re.compile(r"(?:\)|\bconst|\boverride|\bnoexcept)\s*=\s*0\s*;")
_LINKAGE = re.compile(r'\bextern\s*"[^"]*"|\boperator\s*""')
_DECLARATION = re.compile(
    r"(?!co_await\b)(?:(?:const|constexpr|static|auto)\b|[\w:]+(?:<[^;=]*>)?(?:\s*[&*]+\s*|\s+[&*]*)(?=\w+\s*(?:=|;|\{|\()))")
_DECLARED = re.compile(r"(\w+)\s*(?:=[^=]|;|\{|\()|\[([\w, ]+)\]\s*=")
_NO_STATEMENT = re.compile(r"(?:return|co_return|break|continue|throw|goto|using|typedef|friend|static_assert|else|while|case)\b|[{}]|$")
_LEAVES = re.compile(r"(?:return|co_return|throw|break|continue)\b")
_ASSIGNMENT = re.compile(r"([\w.]+)\s*=[^=]|([\w.]+)\.(?:clear|reset)\(\);$")
_CALL = re.compile(r"(?:co_await\s+)?[\w:.>()\[\]-]*\w\s*(?:<[\w:, ]+>)?\(")


def _skipped(code):
    """The ranges in which nothing is changed: what the compiler checks by itself, and what is no behaviour."""
    for match in _COMPILE_TIME.finditer(code):
        yield match.start(), closing(code, match.end())
    for pattern in (_ATTRIBUTE, _PURE, _LINKAGE):
        for match in pattern.finditer(code):
            yield match.span()


def mutations(text):
    """Every mutation of the text, in the order of its lines."""
    code = without_directives(source.blanked(text))
    skipped = list(_skipped(code))
    found = []
    for make in (_operators, _constants, _literals, _moves):
        found += make(text, code)
    found = [m for m in found if not any(m.start < end and start < m.end for start, end in skipped)]
    return sorted(found + list(_conditions(code, found, skipped)), key=lambda m: (m.start, m.end))


def _operators(_text, code):
    for match in _BINARY.finditer(code):
        text_beside = _TEXT_BEFORE.search(code[max(0, match.start() - 12):match.start()]) or _TEXT_AFTER.match(code, match.end())
        if match.group() != "+" or not text_beside:
            yield Mutation("operator", *match.span(), _SWAPS[match.group()])
    for match in _STEP.finditer(code):
        yield Mutation("operator", *match.span(), "--" if match.group() == "++" else "++")
    for match in _NOT.finditer(code):
        yield Mutation("operator", *match.span(), "")


def _conditions(code, others, skipped):
    """A condition in which no operator is to change is turned round as a whole."""
    for match in _CONDITION.finditer(code):
        start, end = match.end(), closing(code, match.end() - 1) - 1
        condition = code[start:end]
        declares = ";" in condition or re.search(r"[^=!<>]=[^=]", condition)
        changed = any(start <= other.start < end for other in others if other.kind == "operator")
        if not declares and not changed and not any(start < b and a < end for a, b in skipped):
            yield Mutation("operator", start, end, f"!({condition})") if '"' not in condition else Mutation(
                "operator", start, start, "false == ")


def _constants(_text, code):
    for match in _NUMBER.finditer(code):
        yield Mutation("constant", *match.span(), _next(match.group().replace("'", "")))
    for match in _TRUTH.finditer(code):
        yield Mutation("constant", *match.span(), "false" if match.group() == "true" else "true")


def _next(number):
    if number[:2] in ("0x", "0X"):
        return hex(int(number, 16) + 1)
    return str(float(number) + 1) if "." in number else str(int(number) + 1)


def _literals(text, code):
    """A character more in a string, another in place of a character."""
    for start, end in source.literals(text):
        if code[start].isspace():
            continue  # of a directive
        if text[start] == "'":
            yield Mutation("constant", start + 1, end - 1, "!" if text[start + 1:end - 1] == "~" else "~")
            continue
        closing_mark = text.index("(", start) - start if text[start] == "R" else 1  # )mark" is as long as R"mark
        yield Mutation("constant", end - closing_mark, end - closing_mark, "~")


def _moves(text, code):
    previous = None
    for statement in statements(code):
        here = statement.text(code)
        if _LEAVES.match(here):
            if statement.early and not _ends_a_switch(code, here, statement):
                yield Mutation("return", statement.start, statement.end, "{ }")
        elif not _DECLARATION.match(here) and _CALL.match(here):
            yield Mutation("call", statement.start, statement.end, "{ }")
        if previous and _can_swap(code, previous, statement):
            between = text[previous.end:statement.start]
            yield Mutation("order", previous.start, statement.end,
                           statement.text(text) + between + previous.text(text))
        previous = statement


def _ends_a_switch(code, here, statement):
    return here == "break;" and code[statement.end:].lstrip()[:1] == "}"


def _can_swap(code, first, second):
    """Neighbours in one block, of which the second does not use what the first declares."""
    if first.block != second.block or first.controlled or second.controlled or code[first.end:second.start].strip():
        return False
    one, other = first.text(code), second.text(code)
    if _NO_STATEMENT.match(one) or _NO_STATEMENT.match(other):
        return False
    if _independent(one, other):
        return False
    declares = _DECLARATION.match(one)
    if declares and _DECLARATION.match(other):
        return False  # two values, taken in either order
    if declares:
        names = _DECLARED.search(one)
        names = re.findall(r"\w+", names.group(1) or names.group(2)) if names else []
        return bool(names) and not any(re.search(rf"\b{name}\b", other) for name in names)
    return True


def _independent(one, other):
    """Two assignments, neither of which names what the other sets: their order means nothing."""
    sets = [_ASSIGNMENT.match(text) for text in (one, other)]
    if not all(sets):
        return False
    first, second = ((match.group(1) or match.group(2)).split(".")[0] for match in sets)
    return not re.search(rf"\b{first}\b", other) and not re.search(rf"\b{second}\b", one)
