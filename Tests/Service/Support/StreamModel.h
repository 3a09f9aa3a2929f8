#pragma once
#include "Tests/Service/Support/ForwardBench.h"
#include <list>
#include <optional>
#include <random>

namespace veranox::test {

/// One end of a stream whose bytes tell the stream, the direction and their place. Never waits.
class ModelEnd {
public:
    enum class State { open, ended, cut };

    ModelEnd(Peer peer, std::uint64_t sendSeed, std::uint64_t receiveSeed)
        : m_peer(std::move(peer)),
          m_sendSeed(sendSeed),
          m_receiveSeed(receiveSeed)
    {
    }

    void send(std::size_t most);
    /// Takes what is there, up to that much. False when a byte came that was not due.
    bool receive(std::size_t most);
    void finish();
    void reset();

    std::uint64_t sent() const { return m_sent; }
    std::uint64_t received() const { return m_received; }
    bool isFinished() const { return m_isFinished; }
    State state() const { return m_state; } // of what comes from the other side
    Peer &peer() { return m_peer; }

private:
    Peer m_peer;
    std::uint64_t m_sendSeed;
    std::uint64_t m_receiveSeed;
    std::uint64_t m_sent = 0;
    std::uint64_t m_received = 0;
    bool m_isFinished = false;
    State m_state = State::open;
};

/// Streams through several listeners to whom everything happens that can, in an order that depends on the seed.
class StreamModel {
public:
    StreamModel(ForwardBench &bench, std::uint64_t seed);
    StreamModel(const StreamModel &) = delete;
    StreamModel &operator=(const StreamModel &) = delete;
    ~StreamModel();

    void step();
    /// Lets all that nobody cut come to an end in order, and ends the rest. False when one does not.
    bool settle();
    /// Bytes arrived that were not due, or an end came that nobody explains.
    bool isBroken() const { return m_isBroken; }
    std::int64_t active() const;
    unsigned opened() const { return m_opened; }
    unsigned whole() const { return m_whole; } // streams that came to an end in order, with every byte

private:
    /// How a listener's dials go.
    enum class Kind { plain, flaky, mortal };
    static constexpr std::size_t doorCount = 3;
    static constexpr std::size_t mostStreams = 500;

    struct Gate {
        Kind kind = Kind::plain;
        std::optional<Peer> target;
        std::optional<ForwardBench::Door> door;
    };
    struct Stream {
        Stream(std::uint64_t streamId, std::size_t gate, Peer peer);
        std::uint64_t id;
        std::size_t gate;
        ModelEnd client;
        std::optional<ModelEnd> far;
        bool mayBeCut = false;
    };

    unsigned below(unsigned end);
    void open();
    void openGate(Gate &gate);
    void restart(std::size_t index);
    void mend(Gate &gate);
    void killTarget(Gate &gate);
    void acceptAll();
    void adopt(Peer peer);
    void act(Stream &stream);
    void look(Stream &stream);
    bool isDone(const Stream &stream);

    ForwardBench &m_bench;
    std::mt19937_64 m_random;
    std::array<Gate, doorCount> m_gates;
    std::list<Stream> m_streams;
    std::list<Peer> m_nameless; // taken by a target, and not yet said whose they are
    std::int64_t m_activeOfGone = 0;
    std::uint64_t m_nextId = 1;
    unsigned m_opened = 0;
    unsigned m_whole = 0;
    bool m_isBroken = false;
};

} // namespace veranox::test
