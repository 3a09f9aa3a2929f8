#!/usr/bin/python3
"""What scripts/mutants changes, which tests it takes for a file, and how it bounds what it runs.

usage: mutants_test.py SCRIPTS_FOLDER
"""
import json
import os
import subprocess
import sys
import tempfile
import time
import unittest

SCRIPTS = os.path.realpath(sys.argv.pop(1))
sys.dont_write_bytecode = True
sys.path.insert(0, SCRIPTS)
from mutating import covering, mutations, workshop  # noqa: E402


def changed(text, *kinds):
    """The text with each of its mutations of these kinds."""
    return [m.apply(text) for m in mutations.mutations(text) if m.kind in kinds]


def in_function(body):
    return f"void f()\n{{\n    {body}\n}}\n"


class Operators(unittest.TestCase):
    def check(self, body, *expected):
        self.assertEqual(changed(in_function(body), "operator"), [in_function(each) for each in expected])

    def test_comparisons_move_by_one_and_turn_round(self):
        self.check("a = b < c;", "a = b <= c;")
        self.check("a = b >= c;", "a = b > c;")
        self.check("a = b != c;", "a = b == c;")

    def test_logic_and_arithmetic(self):
        self.check("a = b && c || d;", "a = b || c || d;", "a = b && c && d;")
        self.check("a += b - c * d;", "a -= b - c * d;", "a += b + c * d;", "a += b - c / d;")
        self.check("a = !b;", "a = b;")
        self.check("++a;", "--a;")

    def test_templates_pointers_and_references_are_none(self):
        self.check("QList<int> &a = *b;")
        self.check("QMap<int, QList<int>> a(b->c, T &&d, E *e);")

    def test_a_sum_of_texts_has_no_difference(self):
        self.check('a = b + "c";')
        self.check("a = u'/' + b;")

    def test_a_plain_condition_is_turned_round(self):
        self.check("if (done()) g();", "if (!(done())) g();")
        self.check("while (a.b()) g();", "while (!(a.b())) g();")
        self.check("if (const auto a = b()) g();")


class Constants(unittest.TestCase):
    def check(self, text, *expected):
        self.assertEqual(changed(text, "constant"), list(expected))

    def test_numbers(self):
        self.check("int a = 1'000;\n", "int a = 1001;\n")
        self.check("auto a = 5s;\n", "auto a = 6s;\n")
        self.check("auto a = 0x1F;\n", "auto a = 0x20;\n")
        self.check("auto a = 0.5;\n", "auto a = 1.5;\n")
        self.check("int a2 = b3;\n")

    def test_truth(self):
        self.check("bool a = true;\n", "bool a = false;\n")

    def test_text(self):
        self.check('auto a = u"b"_s;\n', 'auto a = u"b~"_s;\n')
        self.check('auto a = "";\n', 'auto a = "~";\n')
        self.check("auto a = 'b';\n", "auto a = '~';\n")
        self.check('auto a = R"(b "c")";\n', 'auto a = R"(b "c"~)";\n')
        self.check('auto a = R"x(b)x";\n', 'auto a = R"x(b~)x";\n')

    def test_what_is_no_behaviour_stays(self):
        for text in ('#include "a.h"\n', "#if A > 1\n", "// 1 < 2\n", "/* true */\n", 'static_assert(sizeof(A) == 4, "why");\n',
                     '[[nodiscard("why")]] A f();\n', "virtual void f() const = 0;\n", 'extern "C" {\n}\n',
                     'A operator""_a(B b);\n', "void f() noexcept(true);\n"):
            self.assertEqual(mutations.mutations(text), [], text)


class Moves(unittest.TestCase):
    def check(self, kind, body, *expected):
        self.assertEqual(changed(in_function(body), kind), [in_function(each) for each in expected])

    def test_an_early_return_goes(self):
        self.check("return", "if (a)\n        return;\n    b();", "if (a)\n        { }\n    b();")
        self.check("return", "if (a) {\n        b();\n        throw c;\n    }", "if (a) {\n        b();\n        { }\n    }")
        self.check("return", "for (;;) {\n        if (a) continue;\n        b();\n    }",
                   "for (;;) {\n        if (a) { }\n        b();\n    }")

    def test_the_last_return_stays(self):
        self.check("return", "b();\n    return a;")
        self.check("return", "switch (a) {\n    default:\n        b();\n        break;\n    }")

    def test_a_call_goes(self):
        self.check("call", "a.b(c);", "{ }")
        self.check("call", "co_await a();", "{ }")
        self.check("call", "const auto a = b();")
        self.check("call", "auto a = [] { b(); };", "auto a = [] { { } };")
        self.check("call", "if (a)\n        b({.c = d});", "if (a)\n        { }")

    def test_neighbours_change_places(self):
        self.check("order", "a();\n    b();", "b();\n    a();")
        self.check("order", "a(R\"(;)\");\n    // why\n    b();", "b();\n    // why\n    a(R\"(;)\");")

    def test_what_needs_its_order_or_has_none_stays(self):
        self.check("order", "const auto a = b();\n    c(a);")
        self.check("order", "const auto a = b();\n    const auto c = d();")
        self.check("order", "m_a = 1;\n    m_b.clear();")
        self.check("order", "if (a)\n        b();\n    c();")
        self.check("order", "a();\n    return;")

    def test_an_assignment_that_the_other_names_has_an_order(self):
        self.check("order", "m_a = 1;\n    m_b = m_a;", "m_b = m_a;\n    m_a = 1;")

    def test_a_constructors_body_and_a_members_are_seen(self):
        text = "A::A(std::function<void(int)> f, B::C c) : m_b{c}, m_f(f)\n{\n    a();\n}\n"
        self.assertEqual(changed(text, "call"), [text.replace("a();", "{ }")])
        text = "class A {\n    void f() const\n    {\n        a();\n    }\n    int m_b;\n};\n"
        self.assertEqual(changed(text, "call"), [text.replace("a();", "{ }")])


class Told(unittest.TestCase):
    def test_by_the_line_as_it_was_and_is(self):
        text = in_function("a = b < c;")
        self.assertEqual(mutations.mutations(text)[0].describe(text), "a = b [< -> <=] c;")

    def test_by_what_is_missing(self):
        text = in_function("a(b,\n        c);")
        self.assertEqual(mutations.mutations(text)[0].describe(text), "without `a(b, c);`")


class Covering(unittest.TestCase):
    PROGRAMS = {
        "store_tests": ["Tests/Core/StoreTests.cpp"],
        "jobs_tests": ["Tests/Core/Jobs/JobTests.cpp"],
        "client_contract_tests": ["Tests/API/ContractTests.cpp"],
        "records_tests": ["Tests/API/RecordTests.cpp"],
        "service_tests": ["Tests/Service/Log/LogTests.cpp", "Tests/Service/Net/EndpointTests.cpp"],
    }

    def check(self, path, expected):
        self.assertEqual(covering.mirrored(path, self.PROGRAMS), expected)

    def test_the_mirrored_folder_tells(self):
        self.check("Core/Jobs/Job.cpp", {"jobs_tests": ["Tests/Core/Jobs/JobTests.cpp"]})
        self.check("Service/Net/Endpoint.cpp", {"service_tests": ["Tests/Service/Net/EndpointTests.cpp"]})
        self.check("API/Record.cpp", {"records_tests": ["Tests/API/RecordTests.cpp"]})

    def test_without_a_mirror_the_folder_above_tells_without_its_other_folders(self):
        self.check("Core/Store/Store.cpp", {"store_tests": ["Tests/Core/StoreTests.cpp"]})

    def test_nothing_covers_what_has_no_tests(self):
        self.check("Elsewhere/A.cpp", {})

    def test_the_compile_database_tells_the_programs(self):
        with tempfile.TemporaryDirectory() as build:
            entry = {"directory": "/r/build", "file": "/r/Tests/A/B.cpp", "command": "c -o Tests/A/CMakeFiles/a_tests.dir/B.o"}
            other = {"directory": "/r/build", "file": "/r/A/B.cpp", "command": "c -o CMakeFiles/a.dir/B.o"}
            with open(os.path.join(build, "compile_commands.json"), "w", encoding="utf-8") as file:
                json.dump([entry, other], file)
            self.assertEqual(covering.sources_by_program(build, "/r"), {"a_tests": ["Tests/A/B.cpp"]})

    def test_what_is_named_after_the_file_comes_first_and_a_desktop_is_put_before(self):
        with tempfile.TemporaryDirectory() as root:
            def write(path, text):
                os.makedirs(os.path.dirname(os.path.join(root, path)), exist_ok=True)
                with open(os.path.join(root, path), "w", encoding="utf-8") as file:
                    file.write(text)

            write("Tests/A/OtherTests.cpp", "TEST(Other, Does) {}\nTEST_P(Many, Do) {}\n")
            write("Tests/A/ThingTests.cpp", "TEST_F(Thing, Does) {}\nTEST_F(Thing, DoesMore) {}\n")
            write("Tests/A/ScreenTests.cpp", "TEST(Screen, Shows) {}\n")
            write("build/Tests/A/CTestTestfile.cmake",
                  'add_test([=[d.Screen.Shows]=] "/r/virtual-desktop" "--no-x" "--" "/r/tests/screen_tests" "--gtest_filter=x")\n')
            found = covering.steps("A/Thing.cpp", {
                "a_tests": ["Tests/A/OtherTests.cpp", "Tests/A/ThingTests.cpp"], "screen_tests": ["Tests/A/ScreenTests.cpp"],
            }, root, os.path.join(root, "build"))
        self.assertEqual([(step.program, step.filter.split(":")[0], step.wrapper) for step in found], [
            ("a_tests", "Thing.*", ()), ("a_tests", "Other.*", ()),
            ("screen_tests", "Screen.*", ("/r/virtual-desktop", "--no-x", "--"))])
        self.assertIn("*/Many.*", found[1].filter)


class Workshop(unittest.TestCase):
    def setUp(self):
        temporary = tempfile.TemporaryDirectory()
        self.addCleanup(temporary.cleanup)
        self.top = temporary.name

    def test_what_hangs_is_stopped_with_all_that_it_started(self):
        began = time.monotonic()
        ended = workshop.run(["bash", "-c", "set -m; sleep 60 & echo $!; wait"], self.top, 1)
        self.assertIsNone(ended.status)
        self.assertFalse(ended.ok)
        self.assertLess(time.monotonic() - began, 20)
        with self.assertRaises(ProcessLookupError):
            for _ in range(100):
                os.kill(int(ended.output), 0)
                time.sleep(0.05)

    def test_a_failure_of_the_compiler_is_told_from_one_of_the_program(self):
        self.assertTrue(workshop.was_not_compiled(workshop.Ended(1, "[1/2] x\nFAILED: a/b.cpp.o \nerror")))
        self.assertFalse(workshop.was_not_compiled(workshop.Ended(1, "[1/2] x\nFAILED: tests/a_tests b[1]_tests.cmake\n")))

    def test_the_copy_follows_the_checkout_and_leaves_what_is_the_same(self):
        checkout, copy = os.path.join(self.top, "checkout"), os.path.join(self.top, "copy")
        subprocess.run(["git", "init", "-q", checkout], check=True)

        def plant(name, text):
            os.makedirs(os.path.dirname(os.path.join(checkout, name)), exist_ok=True)
            with open(os.path.join(checkout, name), "w", encoding="utf-8") as file:
                file.write(text)

        for name in ("a/kept.cpp", "a/changed.cpp", "gone.cpp", "build/product"):
            plant(name, "1")
        plant(".gitignore", "/build/\n")
        workshop.copy_tree(checkout, copy)
        self.assertFalse(os.path.exists(os.path.join(copy, "build")))
        os.makedirs(os.path.join(copy, "build"))
        with open(os.path.join(copy, "build", "object.o"), "w", encoding="utf-8"):
            pass
        os.utime(os.path.join(copy, "a/kept.cpp"), (1, 1))
        plant("a/changed.cpp", "2")
        os.unlink(os.path.join(checkout, "gone.cpp"))
        workshop.copy_tree(checkout, copy)
        self.assertEqual(os.path.getmtime(os.path.join(copy, "a/kept.cpp")), 1)
        with open(os.path.join(copy, "a/changed.cpp"), encoding="utf-8") as file:
            self.assertEqual(file.read(), "2")
        self.assertFalse(os.path.exists(os.path.join(copy, "gone.cpp")))
        self.assertTrue(os.path.exists(os.path.join(copy, "build", "object.o")))


class CommandLine(unittest.TestCase):
    def mutants(self, *arguments):
        run = subprocess.run([os.path.join(SCRIPTS, "mutants"), *arguments], capture_output=True, text=True, timeout=60)
        return run.returncode, run.stdout, run.stderr

    def test_what_is_no_source_is_refused(self):
        code, _, problem = self.mutants("/etc/passwd")
        self.assertEqual(code, 2)
        self.assertIn("no C++ file of this checkout", problem)

    def test_an_unknown_kind_or_range_is_refused(self):
        for arguments in (("--kinds", "colour"), ("--only", "ten")):
            self.assertEqual(self.mutants("A.cpp", *arguments)[0], 2)

    def test_it_lists_the_lines_that_are_asked_for(self):
        source = os.path.join(SCRIPTS, "..", "Tests", "Support", "TestMain.cpp")
        code, listed, _ = self.mutants(source, "--list", "--only", "6", "--kinds", "call")
        self.assertEqual(code, 0)
        self.assertEqual(listed, "Tests/Support/TestMain.cpp:6: call: without `::testing::InitGoogleTest(&argc, argv);`\n")


if __name__ == "__main__":
    unittest.main()
