#pragma once
#include "Service/Files/Descriptor.h"
#include <string>
#include <sys/types.h>
#include <vector>

namespace veranox {

/// Another program, run by this one: with nothing on its standard input, exactly the given environment and no open file
/// of ours. It ends with this object, and where the system offers that also when this process is killed.
class ChildProcess {
public:
    /// `arguments` begins with the path of the program. Throws std::system_error when it cannot be started; a program
    /// that is not there ends at once with status 127.
    ChildProcess(std::vector<std::string> arguments, std::vector<std::string> environment);
    ChildProcess(const ChildProcess &) = delete;
    ChildProcess &operator=(const ChildProcess &) = delete;
    /// Kills it if it still runs, and reaps it.
    ~ChildProcess();

    pid_t id() const { return m_id; }
    /// The reading ends of what it writes, given away.
    Descriptor takeOutput() { return std::move(m_output); }
    Descriptor takeError() { return std::move(m_error); }

private:
    pid_t m_id = -1;
    Descriptor m_output{-1};
    Descriptor m_error{-1};
};

/// For a child between fork and exec: lets it die with its parent, whose process id is given, and keep none of its
/// files but the standard three. Calls nothing but what is allowed there.
void prepareChild(pid_t parent);

} // namespace veranox
