// Stands in for the service's executable. Its leading arguments tell it, one after the other, what to do; the first
// one that it does not know ("gui") ends it with status 0. Never lives longer than two minutes.
#include <charconv>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <dirent.h>
#include <string>
#include <string_view>
#include <sys/wait.h>
#include <unistd.h>

namespace {

int number(std::string_view text)
{
    int value = 0;
    std::from_chars(text.data(), text.data() + text.size(), value);
    return value;
}

void put(int descriptor, std::string_view text)
{
    while (!text.empty()) {
        const ssize_t written = ::write(descriptor, text.data(), text.size());
        if (written <= 0)
            std::_Exit(99);
        text.remove_prefix(static_cast<std::size_t>(written));
    }
}

std::string bytesOf(std::string_view hexadecimal)
{
    std::string bytes;
    for (std::size_t at = 0; at + 1 < hexadecimal.size(); at += 2) {
        unsigned value = 0;
        std::from_chars(hexadecimal.data() + at, hexadecimal.data() + at + 2, value, 16);
        bytes.push_back(static_cast<char>(value));
    }
    return bytes;
}

void sayEnvironment(const std::string &name)
{
    const char *const value = std::getenv(name.c_str());
    put(STDOUT_FILENO, name + '=' + (value ? value : "(absent)") + '\n');
}

void sayDescriptors()
{
    std::string list = "descriptors";
    DIR *const directory = ::opendir("/proc/self/fd");
    while (const dirent *const entry = ::readdir(directory)) {
        if (const std::string name = entry->d_name; name[0] != '.' && number(name) != ::dirfd(directory))
            list += ' ' + name;
    }
    ::closedir(directory);
    put(STDOUT_FILENO, list + '\n');
}

// Those that it cannot be sent, or does not care for.
void saySignals()
{
    sigset_t blocked;
    ::sigprocmask(SIG_BLOCK, nullptr, &blocked);
    std::string list = "deaf to";
    for (int signal = 1; signal < 32; ++signal) {
        struct sigaction action{};
        ::sigaction(signal, nullptr, &action);
        if (::sigismember(&blocked, signal) == 1 || action.sa_handler == SIG_IGN)
            list += ' ' + std::to_string(signal);
    }
    put(STDOUT_FILENO, list + '\n');
}

// So many megabytes of one pattern, repeated.
void flood(std::string_view megabytes, std::string_view pattern)
{
    std::string block;
    while (block.size() < 1024UZ * 1024)
        block += pattern;
    for (int count = number(megabytes); count > 0; --count)
        put(STDOUT_FILENO, block);
}

void closeOutput()
{
    ::close(STDOUT_FILENO);
    ::close(STDERR_FILENO);
}

// Leaves a process behind that holds the output open.
void leaveHeir()
{
    if (::fork() == 0) {
        ::sleep(20);
        std::_Exit(0);
    }
}

bool obey(std::string_view word, const std::string &rest)
{
    if (word == "say")
        put(STDOUT_FILENO, rest);
    else if (word == "complain")
        put(STDERR_FILENO, rest);
    else if (word == "bytes")
        put(STDOUT_FILENO, bytesOf(rest));
    else if (word == "environment")
        sayEnvironment(rest);
    else if (word == "descriptors")
        sayDescriptors();
    else if (word == "signals")
        saySignals();
    else if (word == "group")
        put(STDOUT_FILENO, ::getpgrp() == ::getpid() ? "leads a group\n" : "belongs to a group\n");
    else if (word == "flood")
        flood(rest.substr(0, rest.find(':')), bytesOf(rest.substr(rest.find(':') + 1)));
    else if (word == "nap") // milliseconds
        ::usleep(static_cast<useconds_t>(number(rest)) * 1000);
    else if (word == "mute")
        closeOutput();
    else if (word == "stubborn")
        std::signal(SIGTERM, SIG_IGN);
    else if (word == "heir")
        leaveHeir();
    else if (word == "exit")
        std::_Exit(number(rest));
    else if (word == "die") // by this signal
        std::raise(number(rest));
    else if (word == "stay")
        for (;;)
            ::pause();
    else
        return false;
    return true;
}

} // namespace

int main(int argc, char **argv)
{
    ::alarm(120);
    for (int index = 1; index < argc; ++index) {
        const std::string argument = argv[index];
        const auto colon = argument.find(':');
        const std::string rest = colon == std::string::npos ? std::string() : argument.substr(colon + 1);
        if (!obey(argument.substr(0, colon), rest))
            break;
    }
    return 0;
}
