"""The house rules that no tool knows. Each takes the blanked code of a file and yields (line, sentence)."""
import re

from linting import source

LONGEST_FILE = 600


def contextless_connects(code):
    """A connection whose receiver is not named outlives whatever its functor uses."""
    for position, arguments in source.calls(code, "connect"):
        signal = len(arguments) == 3 and re.match(r"&\s*[\w:<>]+::\w+$|qOverload|QOverload", arguments[1])
        if signal and "SLOT" not in arguments[2]:
            yield source.line_of(code, position), "connect() without a context object: name the object whose end ends the connection"
    for position, arguments in source.calls(code, "singleShot"):
        functor = len(arguments) in (2, 3) and arguments[-1].startswith("[")
        if functor and (len(arguments) == 2 or arguments[1].startswith("Qt::")):
            yield source.line_of(code, position), "singleShot() without a context object: name the object whose end ends the wait"


def conditionals_in_functions(code):
    """A function that is two functions: a file per system, chosen by the build, keeps each readable."""
    for position, token, open_braces in source.walk(code):
        if token == "#" and {"function", "lambda", "control"} & set(open_braces):
            yield source.line_of(code, position), "preprocessor conditional in a function body: a file per case, chosen by CMake"


def lambda_coroutines(code):
    """The closure of a lambda dies before the frame that uses its captures."""
    seen = set()
    for position, token, open_braces in source.walk(code):
        bodies = [kind for kind in open_braces if kind in ("function", "lambda")]
        line = source.line_of(code, position)
        if token != "#" and bodies and bodies[-1] == "lambda" and line not in seen:
            seen.add(line)
            yield line, "a lambda is never a coroutine: write a function and pass what it needs by value"


CPP_RULES = (contextless_connects, conditionals_in_functions, lambda_coroutines)

_FOREIGN_SECTION = re.compile(r"\bParts? [0-9]\.[0-9]\b")


def foreign_sections(text):
    """Code and documents give the reason, not a number in a document that its reader does not have."""
    for number, line in enumerate(text.split("\n"), 1):
        if _FOREIGN_SECTION.search(line):
            yield number, "cites a section of a document outside of this repository: give the reason instead"


def too_long(text):
    lines = text.count("\n")
    if lines > LONGEST_FILE:
        yield LONGEST_FILE, f"{lines} lines: split it by subject (at most {LONGEST_FILE})"
