#!/usr/bin/python3
"""What the job library must refuse when it is compiled, and with which words.

usage: refusals.py COMPILER FLAG...

Each line is compiled on its own. A wrong coroutine that compiled would crash at its first wait, and only sometimes.
"""
import concurrent.futures
import os
import subprocess
import sys
import tempfile

ACCEPTED = None
PRELUDE = """
using namespace jobs;
class Owner {
public:
    explicit Owner(MainQueue &queue) : jobs(queue) { }
    Async<int> work() { co_return 1; }
    JobScope jobs;
};
"""

# name, the words of the refusal (or ACCEPTED), code
CASES = [
    ("reference to text", "takes values by value", "Async<int> f(const QString &s) { co_return s.size() > 0; }"),
    ("second reference", "takes its parameters by value", "Async<int> f(int, const QString &s) { co_return s.size() > 0; }"),
    ("rvalue reference", "takes its parameters by value", "Async<int> f(QString &&s) { co_return s.size() > 0; }"),
    ("QStringView", "a view dangles", "Async<int> f(QStringView s) { co_return s.size() > 0; }"),
    ("QByteArrayView", "a view dangles", "Async<int> f(QByteArrayView s) { co_return s.size() > 0; }"),
    ("string_view", "a view dangles", "Async<int> f(int, std::string_view s) { co_return s.size() > 0; }"),
    ("span", "a view dangles", "Async<int> f(std::span<int> s) { co_return s.size() > 0; }"),
    ("initializer_list", "a view dangles", "Async<int> f(std::initializer_list<int> s) { co_return s.size() > 0; }"),
    ("lambda with a capture", "never a coroutine",
     "auto f(int x) { auto l = [x]() -> Async<int> { co_return x; }; return l(); }"),
    ("lambda without a capture", "never a coroutine",
     "auto f() { auto l = [](int x, QString s) -> Async<int> { co_return x + (s.size() > 0); }; return l(1, {}); }"),
    ("generic lambda", "only objects with an identity",
     "auto f() { auto l = [](auto x) -> Async<int> { co_return x; }; return l(1); }"),
    ("member of a value", "only objects with an identity", "struct V { QString s; Async<int> f() { co_return 1; } };"),
    ("foreign awaitable", "no matching|no viable|cannot convert|coroutine_handle<int>",
     "struct W { bool await_ready() { return false; } void await_suspend(std::coroutine_handle<int>) { }"
     " void await_resume() { } }; Async<> f() { co_await W{}; }"),
    ("foreign coroutine", "JobPromise|no matching",
     "struct T { struct promise_type { T get_return_object() { return {}; } std::suspend_never initial_suspend() { return {}; }"
     " std::suspend_never final_suspend() noexcept { return {}; } void unhandled_exception() { } void return_void() { } }; };"
     " T g() { co_await sleep(std::chrono::seconds(1)); }"),
    ("dropped Async", "awaited or started", "void g(Owner *o) { o->work(); }"),
    ("dropped Child", "not kept", "Async<> g(Owner *o) { fork(o->work()); co_return; }"),
    ("dropped Completion", "nobody would get the answer", "void g(Workers *w) { w->run([] { return 1; }); }"),
    ("child awaited at once", "deleted", "Async<> g(Owner *o) { co_await fork(o->work()); }"),
    ("Async awaited as a variable", "invalid operands|no matching|no member|'this' argument|cannot",
     "Async<> g(Owner *o) { auto a = o->work(); co_await a; }"),
    ("wrong result", "no viable|no matching|constraints not satisfied", "Async<int> g() { co_return QString(); }"),
    ("member", ACCEPTED, "Async<> g(Owner *o) { const int n = co_await o->work(); (void)n; }"),
    ("aggregate by value", ACCEPTED, "struct R { QString a; int b; }; Async<int> f(R r) { co_return r.b; }"),
    ("hop", ACCEPTED, "Async<> g(Workers *w) { const int n = co_await w->run([] { return 1; }); (void)n; }"),
    ("interface", ACCEPTED,
     "struct I { I() = default; I(const I &) = delete; virtual ~I() = default; virtual Async<int> f(QString) = 0; };"
     " struct J final : I { Async<int> f(QString s) override { co_return s.size() > 0; } };"
     " Async<> g(I *i) { const int n = co_await i->f({}); (void)n; }"),
]


def check(compile_command, case):
    name, words, code = case
    run = subprocess.run(compile_command, input=PRELUDE + code, capture_output=True, text=True, timeout=120)
    if words is ACCEPTED:
        return None if run.returncode == 0 else f"{name}: should compile, but:\n{run.stderr}"
    if run.returncode == 0:
        return f"{name}: compiles, but must be refused"
    errors = "\n".join(line for line in run.stderr.splitlines() if "error:" in line or "note:" in line)
    if any(part in errors for part in words.split("|")):
        return None
    return f"{name}: refused, but not with \"{words}\":\n{errors}"


def main():
    compiler, flags = sys.argv[1], sys.argv[2:]
    with tempfile.TemporaryDirectory() as folder:
        header = os.path.join(folder, "jobs.h")
        with open(header, "w", encoding="utf-8") as out:
            out.write('#include "Base/Jobs/Jobs.h"\n')
        language = [compiler, *flags, "-Wall", "-Werror=unused-result", "-x"]
        subprocess.run([*language, "c++-header", header, "-o", header + ".gch"], check=True) # the slow part, once
        include = ["-include-pch", header + ".gch"] if "clang" in compiler else ["-include", header]
        command = [*language, "c++", *include, "-fsyntax-only", "-"]
        with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
            failures = [f for f in pool.map(lambda case: check(command, case), CASES) if f]
    for failure in failures:
        print(failure)
    print(f"{len(CASES) - len(failures)} of {len(CASES)} as expected")
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
