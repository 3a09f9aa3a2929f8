#include "Tests/Service/Support/ServiceProcess.h"

#include <array>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <stdexcept>
#include <sys/wait.h>
#include <unistd.h>

namespace veranox::test {

namespace {

struct Pipe {
    Pipe()
    {
        if (::pipe2(ends.data(), O_CLOEXEC) != 0)
            throw std::runtime_error("no pipe");
    }
    std::array<int, 2> ends{};
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

} // namespace

ServiceProcess::ServiceProcess(const std::filesystem::path &home, std::vector<std::string> arguments,
    std::map<std::string, std::string> variables, unsigned descriptors)
{
    variables.emplace("HOME", home.string());
    // A sanitizer's options, where the tests run under one.
    for (const char *name : {"ASAN_OPTIONS", "TSAN_OPTIONS", "UBSAN_OPTIONS"})
        if (const char *value = std::getenv(name))
            variables.emplace(name, value);
    std::vector<std::string> environment;
    environment.reserve(variables.size());
    for (const auto &[name, value] : variables)
        environment.push_back(name + "=" + value);
    arguments.insert(arguments.begin(), VERANOX_EXECUTABLE);
    if (descriptors > 0)
        arguments.insert(
            arguments.begin(), {"/bin/sh", "-c", "ulimit -n " + std::to_string(descriptors) + R"(; exec "$0" "$@")"});
    const Pipe output;
    const Pipe error;
    posix_spawn_file_actions_t actions;
    ::posix_spawn_file_actions_init(&actions);
    ::posix_spawn_file_actions_adddup2(&actions, output.ends[1], STDOUT_FILENO);
    ::posix_spawn_file_actions_adddup2(&actions, error.ends[1], STDERR_FILENO);
    const int failure = ::posix_spawn(&m_process, arguments.front().c_str(), &actions, nullptr,
        pointers(arguments).data(), pointers(environment).data());
    ::posix_spawn_file_actions_destroy(&actions);
    ::close(output.ends[1]);
    ::close(error.ends[1]);
    m_output.descriptor = output.ends[0];
    m_error.descriptor = error.ends[0];
    if (failure != 0)
        throw std::runtime_error("the executable cannot be started");
}

ServiceProcess::~ServiceProcess()
{
    if (!m_status) {
        ::kill(m_process, SIGKILL);
        ::waitpid(m_process, nullptr, 0);
    }
    ::close(m_output.descriptor);
    ::close(m_error.descriptor);
}

bool ServiceProcess::readMore(Stream &stream)
{
    constexpr int patience = 20000;
    pollfd ready{stream.descriptor, POLLIN, 0};
    if (::poll(&ready, 1, patience) <= 0)
        throw std::runtime_error("the service wrote nothing for 20 seconds");
    std::array<char, 4096> piece{};
    const ssize_t count = ::read(stream.descriptor, piece.data(), piece.size());
    if (count > 0)
        stream.text.append(piece.data(), static_cast<std::size_t>(count));
    return count > 0;
}

std::uint16_t ServiceProcess::awaitPort()
{
    while (m_output.text.find("event_code=service_listening") == std::string::npos || !m_output.text.ends_with('\n'))
        if (!readMore(m_output))
            return 0;
    const std::size_t address = m_output.text.find(" address=");
    const std::size_t colon = m_output.text.rfind(':', m_output.text.find(' ', address + 1));
    return static_cast<std::uint16_t>(std::stoi(m_output.text.substr(colon + 1)));
}

void ServiceProcess::signal(int number) const
{
    ::kill(m_process, number);
}

int ServiceProcess::awaitEnd()
{
    if (!m_status) {
        output();
        errorOutput();
        int status = 0;
        ::waitpid(m_process, &status, 0);
        m_status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }
    return *m_status;
}

const std::string &ServiceProcess::output()
{
    while (readMore(m_output)) { }
    return m_output.text;
}

const std::string &ServiceProcess::errorOutput()
{
    while (readMore(m_error)) { }
    return m_error.text;
}

} // namespace veranox::test
