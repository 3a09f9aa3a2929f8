#!/usr/bin/python3
"""Every rule of scripts/lint must refuse what it is there for, and let ordinary code pass.

usage: lint_test.py SCRIPTS_LINT

Each case plants one file in a repository of its own and runs the script on it.
"""
import json
import os
import subprocess
import sys
import tempfile
import unittest

LINT = ""

# name: (check, file, words of the refusal or None where it must pass, text)
CASES = {
    "connect without context": (
        "rules", "A.cpp", "connect() without a context",
        "void f(S *s)\n{\n    QObject::connect(s, &S::done, [s] { s->close(); });\n}\n"),
    "connect over several lines": (
        "rules", "A.cpp", "A.cpp:3: connect() without a context",
        "void f(S *s)\n{\n    connect(s, &S::done,\n        // why not\n        [s](int a, int b) { s->close(a, b); });\n}\n"),
    "connect to a static function": (
        "rules", "A.cpp", "connect() without a context", "void f(S *s)\n{\n    connect(s, &S::done, &close);\n}\n"),
    "connect of an overload": (
        "rules", "A.cpp", "connect() without a context",
        "void f(S *s)\n{\n    connect(s, qOverload<int, int>(&S::done), [] { });\n}\n"),
    "connect with context": (
        "rules", "A.cpp", None,
        "void f(S *s, T *t)\n{\n    connect(s, &S::done, t, [s] { s->close(); });\n    connect(s, &S::done, t, &T::quit);\n}\n"),
    "connect of a socket": (
        "rules", "A.cpp", None,
        "void f(int s, A a)\n{\n    ::connect(s, &a, sizeof(a));\n    co_await socket.connect(end, ec, token);\n}\n"),
    "connect in a comment": (
        "rules", "A.cpp", None, "// connect(s, &S::done, [] { });\nconst char *a = \"connect(s, &S::done, [] { })\";\n"),
    "timer without context": (
        "rules", "A.cpp", "singleShot() without a context", "void f()\n{\n    QTimer::singleShot(0, [] { g(); });\n}\n"),
    "timer with context": (
        "rules", "A.cpp", None, "void f(QObject *o)\n{\n    QTimer::singleShot(0, o, [] { g(); });\n}\n"),
    "ifdef in a function": (
        "rules", "A.cpp", "A.cpp:3: preprocessor conditional", "int f()\n{\n#ifdef Q_OS_MACOS\n    return 1;\n#endif\n    return 2;\n}\n"),
    "if in a loop in a member": (
        "rules", "A.h", "preprocessor conditional",
        "class A : public B {\n    void f() const override\n    {\n        for (;;) {\n#if 1\n            g();\n#endif\n        }\n    }\n};\n"),
    "if in a lambda": (
        "rules", "A.cpp", "preprocessor conditional", "const auto f = [](int a) {\n#if 1\n    return a;\n#endif\n};\n"),
    "if around and in declarations": (
        "rules", "A.h", None,
        "#pragma once\n#if defined(A)\nnamespace a {\nclass [[nodiscard(\"why\")]] B final : public C {\n#if defined(D)\n"
        "    int m_a = 0;\n#endif\n    void f() { }\n#if defined(E)\n    void g();\n#endif\n};\n} // namespace a\n#endif\n"),
    "lambda coroutine": (
        "rules", "A.cpp", "A.cpp:3: a lambda is never a coroutine",
        "void f(J &jobs)\n{\n    jobs.start([x = 1]() -> Async<int> { co_return x; }());\n}\n"),
    "lambda coroutine with control flow": (
        "rules", "A.cpp", "a lambda is never a coroutine",
        "auto f = [](int a) mutable -> jobs::Async<> {\n    while (a) {\n        if (a > 1)\n            co_await g(a);\n    }\n};\n"),
    "lambda coroutine in an argument": (
        "rules", "A.cpp", "a lambda is never a coroutine",
        "void f()\n{\n    spawn(1, [&]() -> awaitable<void> {\n        co_await g();\n    });\n}\n"),
    "coroutine with a lambda in it": (
        "rules", "A.cpp", None,
        "Async<int> A::f(int n)\n{\n    const auto twice = [n](int a) { return a * n; };\n    for (int i = 0; i < n; ++i) {\n"
        "        const int got = co_await m_workers.run([i] { return i; });\n        m_list[i] = twice(got);\n    }\n    co_return 1;\n}\n"),
    "coroutine in a local class": (
        "rules", "A.cpp", None, "void f()\n{\n    struct L {\n        static Async<> g() { co_await h(); }\n    };\n    start(L::g());\n}\n"),
    "too many lines": ("rules", "A.cpp", "A.cpp:600: 601 lines", "// a line\n" * 601),
    "just enough lines": ("rules", "A.cpp", None, "// a line\n" * 600),
    "section of a foreign document": (
        "rules", "README.md", "README.md:2: cites a section", "A title\nas Part " + "2.1 says\n"),
    "sections of a foreign document": ("rules", "A.cpp", "cites a section", "// Parts " + "3.4 and 3.5\n"),
    "part of something": ("rules", "README.md", None, "Part 2 of 3, in 2.1 seconds\n"),
    "format": ("format", "A.cpp", "A.cpp: not formatted", "int  f( ){return 1;}\n"),
    "formatted": ("format", "A.cpp", None, "int f()\n{\n    return 1;\n}\n"),
    "shell": ("shell", "run", "SC2086", "#!/usr/bin/env bash\nrm $1\n"),
    "shell by name": ("shell", "run.sh", "SC2086", "#!/bin/sh\nrm $1\n"),
    "shell in order": ("shell", "run", None, "#!/usr/bin/env bash\nrm \"$1\"\n"),
    "qml": ("qml", "A.qml", "nothingLikeIt", "import QtQml\nQtObject { objectName: nothingLikeIt }\n"),
    "qml that does not parse": ("qml", "A.qml", "Expected token", "import QtQml\nQtObject { objectName: \n"),
    "qml in order": ("qml", "A.qml", None, "import QtQml\nQtObject { objectName: \"a\" }\n"),
    "use after move": (
        "tidy", "A.cpp", "bugprone-use-after-move",
        "#include <string>\n#include <utility>\nstd::string f(std::string a)\n{\n    std::string b = std::move(a);\n    return a + b;\n}\n"),
    "null dereference": (
        "tidy", "A.cpp", "clang-analyzer-core.NullDereference",
        "int f(const int *a)\n{\n    if (a == nullptr)\n        return *a;\n    return 1;\n}\n"),
    "tidy in order": ("tidy", "A.cpp", None, "int f(int a)\n{\n    return a + 1;\n}\n"),
}


class Repository:
    def __init__(self, folder, cache):
        self.folder, self.cache = folder, cache
        subprocess.run(["git", "init", "-q", folder], check=True)
        top = os.path.dirname(os.path.dirname(LINT))
        for name in (".clang-format", ".clang-tidy"):
            with open(os.path.join(top, name), encoding="utf-8") as source:
                self.plant(name, source.read())

    def plant(self, name, text):
        path = os.path.join(self.folder, name)
        os.makedirs(os.path.dirname(path), exist_ok=True)
        with open(path, "w", encoding="utf-8") as file:
            file.write(text)
        subprocess.run(["git", "-C", self.folder, "add", "-f", name], check=True)

    def configure(self, *names, preset="debug", options=""):
        """As CMake would: a compile database of the planted files."""
        build = os.path.join(self.folder, "build", preset)
        os.makedirs(build, exist_ok=True)
        with open(os.path.join(build, "compile_commands.json"), "w", encoding="utf-8") as file:
            json.dump([{"directory": build, "file": os.path.join(self.folder, name),
                        "command": f"clang++-19 -std=c++23 -I{self.folder} {options} -o {name}.o -c "
                                   + os.path.join(self.folder, name)}
                       for name in names], file)

    def lint(self, *checks):
        run = subprocess.run([LINT, "--root", self.folder, *checks], capture_output=True, text=True, timeout=120,
                             env=os.environ | {"XDG_CACHE_HOME": self.cache})
        return run.returncode, run.stdout + run.stderr


class Planted(unittest.TestCase):
    def setUp(self):
        self.cache = self.folder()
        self.repository = Repository(self.folder(), self.cache)

    def folder(self):
        temporary = tempfile.TemporaryDirectory()
        self.addCleanup(temporary.cleanup)
        return os.path.realpath(temporary.name)

    def check(self, check, name, words, text):
        self.repository.plant(name, text)
        if check == "tidy":
            self.repository.configure(name)
        code, output = self.repository.lint(check)
        if words is None:
            self.assertEqual(code, 0, output)
            self.assertIn(f"lint: {check}: ok", output)
        else:
            self.assertEqual(code, 1, output)
            self.assertIn(words, output)
            self.assertIn(f"lint: {check}: refused", output)

    def test_what_git_does_not_track_is_not_looked_at(self):
        with open(os.path.join(self.repository.folder, "B.cpp"), "w", encoding="utf-8") as file:
            file.write("int  f( ){return 1;}\n")
        self.assertEqual(self.repository.lint("format", "rules")[0], 0)

    def test_what_passed_is_remembered_until_it_or_a_header_of_it_changes(self):
        self.repository.plant("Folder/H.h", "#pragma once\nint h();\n")
        self.repository.plant("G.h", "#pragma once\n#include \"Folder/H.h\"\n")
        self.repository.plant("A.cpp", "#include \"G.h\"\nint f()\n{\n    return h();\n}\n")
        self.repository.configure("A.cpp")
        self.assertIn("1 files in", self.repository.lint("tidy")[1])
        self.assertIn("0 files in", self.repository.lint("tidy")[1])
        self.repository.plant("Folder/H.h", "#pragma once\nint h();\nint k();\n")
        self.assertIn("1 files in", self.repository.lint("tidy")[1])
        self.repository.plant("Folder/H.h", "#pragma once\nlong k();\n")
        code, output = self.repository.lint("tidy")
        self.assertEqual(code, 1, output)
        self.assertEqual(self.repository.lint("tidy")[0], 1, "a refusal is not remembered as a pass")

    def test_what_passed_is_remembered_in_every_checkout_and_build(self):
        for preset, options in (("debug", "-g"), ("release", "-O2 -g -DNDEBUG")):
            repository = Repository(self.folder(), self.cache)
            repository.plant("A.cpp", "int f()\n{\n    return 1;\n}\n")
            sources = f'-DSOURCES=\\"{repository.folder}\\" -I{repository.folder}/build/{preset}/a_autogen/include'
            repository.configure("A.cpp", preset=preset, options=f"{options} {sources}")
            code, output = repository.lint("tidy")
            self.assertEqual(code, 0, output)
            self.assertIn("1 files in" if preset == "debug" else "0 files in", output)

    def test_what_passed_with_another_command_or_name_is_looked_at_again(self):
        self.repository.plant("A.cpp", "int f()\n{\n    return 1;\n}\n")
        self.repository.configure("A.cpp")
        self.assertIn("1 files in", self.repository.lint("tidy")[1])
        self.repository.configure("A.cpp", options="-DOTHER")
        self.assertIn("1 files in", self.repository.lint("tidy")[1])
        self.repository.plant("B.cpp", "int f()\n{\n    return 1;\n}\n")
        self.repository.configure("A.cpp", "B.cpp", options="-DOTHER")
        self.assertIn("1 files in", self.repository.lint("tidy")[1])

    def test_a_header_of_an_include_folder_counts(self):
        self.repository.plant("Base/H.h", "#pragma once\nint h();\n")
        self.repository.plant("A.cpp", "#include \"H.h\"\nint f()\n{\n    return h();\n}\n")
        self.repository.configure("A.cpp", options=f"-I{self.repository.folder}/Base")
        self.assertIn("1 files in", self.repository.lint("tidy")[1])
        self.assertIn("0 files in", self.repository.lint("tidy")[1])
        self.repository.plant("Base/H.h", "#pragma once\nint h();\nint k();\n")
        self.assertIn("1 files in", self.repository.lint("tidy")[1])

    def test_without_a_cache_folder_the_checkout_remembers(self):
        blocked = os.path.join(self.folder(), "file")
        with open(blocked, "w", encoding="utf-8"):
            pass
        self.repository.cache = blocked
        self.repository.plant("A.cpp", "int f()\n{\n    return 1;\n}\n")
        self.repository.configure("A.cpp")
        self.assertIn("1 files in", self.repository.lint("tidy")[1])
        self.assertIn("0 files in", self.repository.lint("tidy")[1])

    def test_without_a_build_it_says_what_to_run(self):
        code, output = self.repository.lint("tidy")
        self.assertEqual(code, 1)
        self.assertIn("cmake --preset debug", output)


def planted(case):
    return lambda self: self.check(*case)


for number, (title, planted_case) in enumerate(CASES.items(), 1):
    setattr(Planted, f"test_{number:02}_{title.replace(' ', '_')}", planted(planted_case))

if __name__ == "__main__":
    LINT = os.path.realpath(sys.argv.pop(1))
    unittest.main()
