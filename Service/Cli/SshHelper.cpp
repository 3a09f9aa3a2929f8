#include "Service/Cli/SshHelper.h"

#include "Service/Files/Descriptor.h"
#include "Service/Tunnels/SshCommand.h"
#include <algorithm>
#include <array>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>
#include <sys/socket.h>
#include <sys/un.h>

namespace veranox {

namespace {

Descriptor connectTo(std::string_view path)
{
    Descriptor socket(::socket(AF_UNIX, SOCK_STREAM, 0));
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    const bool usable = socket.get() >= 0 && path.size() < sizeof address.sun_path;
    std::ranges::copy(path.substr(0, sizeof address.sun_path - 1), std::begin(address.sun_path));
    if (!usable || ::connect(socket.get(), reinterpret_cast<const sockaddr *>(&address), sizeof address) != 0)
        socket.reset(-1);
    return socket;
}

/// Hands the open socket to ssh, which waits for it at our standard output.
bool passToParent(const Descriptor &socket)
{
    char byte = 0;
    iovec content{.iov_base = &byte, .iov_len = 1};
    alignas(cmsghdr) std::array<char, CMSG_SPACE(sizeof(int))> control{};
    msghdr message{};
    message.msg_iov = &content;
    message.msg_iovlen = 1;
    message.msg_control = control.data();
    message.msg_controllen = control.size();
    cmsghdr *header = CMSG_FIRSTHDR(&message);
    header->cmsg_level = SOL_SOCKET;
    header->cmsg_type = SCM_RIGHTS;
    header->cmsg_len = CMSG_LEN(sizeof(int));
    const int value = socket.get();
    std::memcpy(CMSG_DATA(header), &value, sizeof value);
    return ::sendmsg(STDOUT_FILENO, &message, 0) == 1;
}

int connectForSsh(std::string_view path)
{
    const Descriptor socket = connectTo(path);
    return socket.get() >= 0 && passToParent(socket) ? EXIT_SUCCESS : EXIT_FAILURE;
}

int answerPasswordQuestion(std::string_view path)
{
    const Descriptor socket = connectTo(path);
    std::array<char, 4096> piece{};
    ssize_t count = 0;
    ssize_t total = 0;
    while ((count = ::read(socket.get(), piece.data(), piece.size())) > 0) {
        if (::write(STDOUT_FILENO, piece.data(), static_cast<std::size_t>(count)) != count)
            return EXIT_FAILURE;
        total += count;
    }
    const bool isWhole = count == 0 && total > 0 && ::write(STDOUT_FILENO, "\n", 1) == 1;
    return isWhole ? EXIT_SUCCESS : EXIT_FAILURE;
}

} // namespace

std::optional<int> runSshHelper(std::span<char *const> words)
{
    if (const char *path = std::getenv(askpassVariable))
        if (words.size() < 2 || std::string_view(words[1]) != "ssh-connect")
            return answerPasswordQuestion(path);
    if (words.size() == 3 && std::string_view(words[1]) == "ssh-connect")
        return connectForSsh(words[2]);
    return std::nullopt;
}

} // namespace veranox
