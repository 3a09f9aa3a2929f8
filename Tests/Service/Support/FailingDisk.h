#pragma once

namespace veranox::test {

/// Lets one step of what this test program does with files fail, or wait, for as long as this lives: the program's own
/// calls of the system pass by here. Only one at a time; for any thread.
class FailingDisk {
public:
    enum class Step {
        read, // opening what is there
        make, // opening what is new or written to
        write,
        writeInPart, // one half is taken
        flushFile,
        rename,
        flushFolder,
        waitForFlush, // flushing a file takes until this goes
    };

    explicit FailingDisk(Step step);
    FailingDisk(const FailingDisk &) = delete;
    FailingDisk &operator=(const FailingDisk &) = delete;
    ~FailingDisk();

    /// How often the step has failed, or has begun to wait.
    int count() const;
};

} // namespace veranox::test
