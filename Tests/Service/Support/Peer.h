#pragma once
#include <cstdint>
#include <string>
#include <string_view>
#include <sys/socket.h>

namespace veranox::test {

/// A plain blocking TCP connection or listener on 127.0.0.1. Nothing waits longer than 20 seconds: then it counts as
/// dead.
class Peer {
public:
    /// Connects.
    static Peer connectTo(std::uint16_t port, const std::string &address = "127.0.0.1");
    /// The same from a port of one's own choice, where the system's may be that of another connection, too.
    static Peer connectFrom(std::uint16_t own, std::uint16_t port);
    /// Listens on a port that the system picks.
    static Peer listening();
    /// The next connection of a listener.
    Peer accept() const;

    Peer(Peer &&other) noexcept;
    Peer &operator=(Peer &&) = delete;
    ~Peer();

    std::uint16_t port() const;
    /// Of the other end.
    std::uint16_t remotePort() const;
    /// False once the other side has gone.
    bool send(std::string_view bytes) const;
    /// How much of it the system takes at once; 0 when it takes nothing.
    std::size_t sendWhatFits(std::string_view bytes) const;
    /// As much as is asked for, or what came until the end.
    std::string receive(std::size_t count) const;
    /// Everything until the end of the stream.
    std::string receiveAll() const { return receive(SIZE_MAX); }
    void finishSending() const;
    /// Closes so that the other side sees a reset.
    void reset();
    void close();
    /// True when the stream ends in a reset; false when it ends in order.
    bool endsInReset() const;
    int descriptor() const { return m_descriptor; }

private:
    explicit Peer(int descriptor);

    int m_descriptor;
};

} // namespace veranox::test
