#include "Service/Files/ChildProcess.h"

#include <array>
#include <csignal>
#include <fcntl.h>
#include <sys/wait.h>

namespace veranox {

namespace {

struct Pipe {
    Pipe()
    {
        std::array<int, 2> ends{};
        if (::pipe(ends.data()) != 0)
            throwSystemError("make a pipe");
        out.reset(ends[0]);
        in.reset(ends[1]);
        ::fcntl(ends[0], F_SETFD, FD_CLOEXEC);
        ::fcntl(ends[1], F_SETFD, FD_CLOEXEC);
    }
    Descriptor out{-1};
    Descriptor in{-1};
};

std::vector<char *> pointers(std::vector<std::string> &texts)
{
    std::vector<char *> result;
    result.reserve(texts.size() + 1);
    for (std::string &text : texts)
        result.push_back(text.data());
    result.push_back(nullptr);
    return result;
}

void restoreSignals()
{
    for (const int number : {SIGPIPE, SIGXFSZ, SIGCHLD})
        ::signal(number, SIG_DFL);
    sigset_t none;
    ::sigemptyset(&none);
    ::sigprocmask(SIG_SETMASK, &none, nullptr);
}

} // namespace

ChildProcess::ChildProcess(std::vector<std::string> arguments, std::vector<std::string> environment)
{
    Pipe output;
    Pipe error;
    const std::vector<char *> words = pointers(arguments);
    const std::vector<char *> variables = pointers(environment);
    const Descriptor nothing(::open("/dev/null", O_RDONLY | O_CLOEXEC));
    if (nothing.get() < 0)
        throwSystemError("open /dev/null for another program");
    const pid_t parent = ::getpid();
    m_id = ::fork();
    if (m_id < 0)
        throwSystemError("start another program");
    if (m_id == 0) {
        ::dup2(nothing.get(), STDIN_FILENO);
        ::dup2(output.in.get(), STDOUT_FILENO);
        ::dup2(error.in.get(), STDERR_FILENO);
        restoreSignals();
        prepareChild(parent);
        ::execve(words[0], words.data(), variables.data());
        constexpr int notFound = 127;
        ::_exit(notFound);
    }
    m_output.reset(output.out.release());
    m_error.reset(error.out.release());
}

ChildProcess::~ChildProcess()
{
    ::kill(m_id, SIGKILL);
    while (::waitpid(m_id, nullptr, 0) < 0 && errno == EINTR) { }
}

} // namespace veranox
