"""C++ text seen the way the house rules need it: without comments and literals, and with its braces understood."""
import re

# A raw string, a string, a character, a line comment, a block comment. Digit separators are no characters.
_NOT_CODE = re.compile(
    r'R"(?P<mark>[^\s()\\]{0,16})\(.*?\)(?P=mark)"'
    r'|"(?:\\.|[^"\\\n])*"'
    r"|(?<![0-9a-fA-F])'(?:\\.|[^'\\\n])*'"
    r"|//[^\n]*"
    r"|/\*.*?\*/",
    re.S,
)
_PREPROCESSOR = re.compile(r"^[ \t]*#(?:\\\n|[^\n])*", re.M)
_CONTROL = re.compile(r"^\s*(?:\}?\s*else\b|if|for|while|switch|do|try|catch|Q_FOREVER)\b")
_TYPE = re.compile(r"^\s*(?:(?:typedef|inline|export|static|constexpr|const)\s+)*(?:namespace|class|struct|union|enum|extern)\b")
_LAMBDA = re.compile(
    r"(?<![\w\])])\[[^\[\]]*\]\s*"  # the captures
    r"(?:<[^{}]*>\s*)?(?:\([^{}]*\)\s*)?(?:(?:mutable|static|constexpr|consteval|noexcept)\s*)*"
    r"(?:->\s*[\w:<>,*&\s]+?)?\s*$"
)


def blanked(text):
    """The text with comments and the insides of literals as spaces, every character in its place."""

    def blank(match):
        found = match.group(0)
        if found.startswith("/"):
            return re.sub(r"[^\n]", " ", found)
        return found[0] + re.sub(r"[^\n]", " ", found[1:-1]) + found[-1]

    return _NOT_CODE.sub(blank, text)


def literals(text):
    """The places of strings and characters, a raw string's R included."""
    return [match.span() for match in _NOT_CODE.finditer(text) if not match.group(0).startswith("/")]


def line_of(text, position):
    return text.count("\n", 0, position) + 1


def _kind(head):
    """What an opening brace begins, told from the text before it: control, lambda, function, type or other."""
    if _CONTROL.match(head):
        return "control"
    if _LAMBDA.search(head):
        return "lambda"
    plain = re.sub(r"\[\[.*?\]\]|\balignas\s*\([^()]*\)", " ", head, flags=re.S)
    plain = re.sub(r"\btemplate\s*<[^{}()]*>", " ", plain)
    plain = re.sub(r"\brequires\b[^{}]*?(?=\b(?:class|struct|union)\b)", " ", plain)
    if _TYPE.match(plain) and "(" not in plain:
        return "type"
    return "function" if ")" in plain and not plain.rstrip().endswith("=") else "other"


def walk(code):
    """Yields (position, token, kinds of the open braces) for every coroutine keyword and preprocessor conditional."""
    directives = {m.start(): m for m in _PREPROCESSOR.finditer(code)}
    stack = []
    head_start = 0
    depth = 0  # of parentheses: a semicolon in "for (;;)" does not end the head
    position = 0
    while position < len(code):
        directive = directives.get(position)
        if directive:
            if re.match(r"\s*#\s*(?:if|ifdef|ifndef|elif)\b", directive.group(0)):
                yield position + directive.group(0).index("#"), "#", [kind for kind, _ in stack]
            position = head_start = directive.end()
            continue
        char = code[position]
        if char in "([":
            depth += 1
        elif char in ")]":
            depth -= 1
        elif char == "{":
            stack.append((_kind(code[head_start:position]), depth))
            head_start, depth = position + 1, 0
        elif char == "}":
            depth = stack.pop()[1] if stack else 0
            head_start = position + 1
        elif char == ";" and depth <= 0:
            head_start = position + 1
        elif char == "c" and (word := re.compile(r"\bco_(?:await|return|yield)\b").match(code, position)):
            yield position, word.group(0), [kind for kind, _ in stack]
        position += 1


def calls(code, name):
    """Yields (position, arguments) of every call of name, a regular expression."""
    for match in re.finditer(rf"\b(?:{name})\s*\(", code):
        arguments, depth, start = [], 0, match.end()
        for position in range(match.end(), len(code)):
            char = code[position]
            if char in "([{":
                depth += 1
            elif char in ")]}":
                depth -= 1
            if depth < 0 or (char == "," and depth == 0 and not _in_template(code[start:position])):
                arguments.append(code[start:position].strip())
                start = position + 1
            if depth < 0:
                yield match.start(), arguments
                break


def _in_template(argument):
    return bool(re.search(r"\w<[^<>()]*$", argument))
