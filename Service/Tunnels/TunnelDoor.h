#pragma once
#include "Service/Tunnels/TunnelSurroundings.h"

namespace veranox {

/// The listener of a tunnel at its address on this computer. Where the address is in use it finds out by what.
class TunnelDoor {
public:
    struct Events {
        /// Whether connections come about, by the last one: empty when it did.
        std::function<void(const std::string &problem)> attempted;
        /// What is in the way of the address; some time after open() has failed.
        std::function<void(const PortObstacle &)> obstructed;
    };

    /// `address` is that of the settings. The surroundings must outlive it.
    TunnelDoor(const TunnelSurroundings &around, std::string address, Events events);
    TunnelDoor(const TunnelDoor &) = delete;
    TunnelDoor &operator=(const TunnelDoor &) = delete;
    ~TunnelDoor() { close(); }

    /// Throws std::exception with a sentence.
    void open(Route route);
    /// Drops all connections; no event comes any more. Harmless when repeated.
    void close();
    bool isOpen() const { return m_listener != nullptr; }
    std::int64_t activeConns() const { return m_listener ? m_listener->activeConns() : 0; }

private:
    const TunnelSurroundings &m_around;
    std::string m_address;
    Events m_events;
    std::shared_ptr<Listener> m_listener;
    std::shared_ptr<PortInquiry::Answer> m_question; // while it wants the answer
};

} // namespace veranox
