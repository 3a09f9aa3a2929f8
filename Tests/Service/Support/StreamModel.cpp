#include "Tests/Service/Support/StreamModel.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <boost/asio/steady_timer.hpp>
#include <cerrno>
#include <cstring>
#include <poll.h>
#include <sys/socket.h>

namespace veranox::test {

namespace {

constexpr std::size_t nameSize = sizeof(std::uint64_t); // each client says first whose stream it is

char byteAt(std::uint64_t seed, std::uint64_t place)
{
    std::uint64_t mixed = (seed * 0x9E3779B97F4A7C15ULL) ^ (place * 0xC2B2AE3D27D4EB4FULL);
    mixed ^= mixed >> 29U;
    return static_cast<char>(mixed * 0xBF58476D1CE4E5B9ULL >> 56U);
}

bool isReadable(const Peer &peer)
{
    pollfd entry{.fd = peer.descriptor(), .events = POLLIN, .revents = 0};
    return ::poll(&entry, 1, 0) == 1;
}

/// Some answer late, some not at all, some say no.
boost::asio::awaitable<StreamSocket> dialFlakily(std::uint16_t port, unsigned number)
{
    constexpr unsigned kinds = 8;
    if (number % kinds == 3)
        co_return co_await failToDial("No.");
    if (number % kinds == 5)
        co_return co_await dialWithoutAnswer();
    if (number % 2 == 0) {
        boost::asio::steady_timer timer(
            co_await boost::asio::this_coro::executor, std::chrono::milliseconds(number % kinds));
        co_await timer.async_wait(boost::asio::use_awaitable);
    }
    co_return co_await dialPort(port);
}

} // namespace

void ModelEnd::send(std::size_t most)
{
    if (m_isFinished || m_state == State::cut)
        return;
    std::string bytes(most, '\0');
    for (std::size_t i = 0; i < most; ++i)
        bytes[i] = byteAt(m_sendSeed, m_sent + i);
    const ssize_t count = ::send(m_peer.descriptor(), bytes.data(), most, MSG_DONTWAIT | MSG_NOSIGNAL);
    if (count < 0 && errno != EAGAIN)
        m_state = State::cut; // whoever reads after this sees an end in order
    m_sent += count > 0 ? static_cast<std::uint64_t>(count) : 0;
}

bool ModelEnd::receive(std::size_t most)
{
    std::array<char, 16384> room{};
    while (m_state == State::open && most > 0) {
        const ssize_t count = ::recv(m_peer.descriptor(), room.data(), std::min(most, room.size()), MSG_DONTWAIT);
        if (count < 0 && errno == EAGAIN)
            return true;
        if (count <= 0) {
            m_state = count == 0 ? State::ended : State::cut;
            return true;
        }
        for (ssize_t i = 0; i < count; ++i)
            if (room.at(static_cast<std::size_t>(i)) != byteAt(m_receiveSeed, m_received++))
                return false;
        most -= static_cast<std::size_t>(count);
    }
    return true;
}

void ModelEnd::finish()
{
    m_peer.finishSending();
    m_isFinished = true;
}

void ModelEnd::reset()
{
    m_peer.reset();
    m_isFinished = true;
    m_state = State::cut;
}

StreamModel::Stream::Stream(std::uint64_t streamId, std::size_t gateIndex, Peer peer)
    : id(streamId),
      gate(gateIndex),
      client(std::move(peer), 2 * streamId, 2 * streamId + 1)
{
}

StreamModel::StreamModel(ForwardBench &bench, std::uint64_t seed) : m_bench(bench), m_random(seed)
{
    m_gates[1].kind = Kind::flaky;
    m_gates[2].kind = Kind::mortal;
    for (Gate &gate : m_gates)
        openGate(gate);
}

StreamModel::~StreamModel() = default;

unsigned StreamModel::below(unsigned end)
{
    return static_cast<unsigned>(m_random() % end);
}

void StreamModel::openGate(Gate &gate)
{
    if (!gate.target || gate.target->descriptor() < 0) {
        gate.target.reset();
        gate.target.emplace(Peer::listening());
    }
    const std::uint16_t port = gate.target->port();
    Route route = to(port);
    if (gate.kind == Kind::flaky) {
        route.limits.dial = std::chrono::milliseconds(50);
        route.dial = [port, number = std::make_shared<std::atomic<unsigned>>(below(100))] {
            return dialFlakily(port, number->fetch_add(1));
        };
    }
    gate.door.emplace(m_bench, std::move(route));
}

void StreamModel::step()
{
    constexpr unsigned rareness = 2000;
    if (m_streams.size() < mostStreams && below(4) == 0)
        open();
    if (below(rareness) == 0)
        restart(below(doorCount));
    if (below(rareness) == 0)
        killTarget(m_gates[2]);
    acceptAll();
    if (m_streams.empty())
        return;
    const auto chosen = std::next(m_streams.begin(), below(static_cast<unsigned>(m_streams.size())));
    act(*chosen);
    look(*chosen);
    if (isDone(*chosen))
        m_streams.erase(chosen);
}

void StreamModel::open()
{
    const std::size_t gate = below(doorCount);
    const std::uint64_t id = m_nextId++;
    Stream &stream = m_streams.emplace_back(id, gate, Peer::connectTo(m_gates.at(gate).door->port()));
    stream.mayBeCut = m_gates.at(gate).kind != Kind::plain;
    std::array<char, nameSize> name{};
    std::memcpy(name.data(), &id, nameSize);
    stream.client.peer().send({name.data(), nameSize});
    ++m_opened;
}

void StreamModel::restart(std::size_t index)
{
    for (Stream &stream : m_streams)
        stream.mayBeCut = stream.mayBeCut || stream.gate == index;
    m_gates.at(index).door.reset();
    openGate(m_gates.at(index));
}

/// Its listener goes, and comes back elsewhere with the next restart.
void StreamModel::killTarget(Gate &gate)
{
    gate.target->close();
}

void StreamModel::acceptAll()
{
    for (Gate &gate : m_gates) {
        if (gate.target->descriptor() < 0)
            continue;
        while (isReadable(*gate.target))
            m_nameless.push_back(gate.target->accept());
    }
    for (auto peer = m_nameless.begin(); peer != m_nameless.end();) {
        if (isReadable(*peer)) {
            adopt(std::move(*peer));
            peer = m_nameless.erase(peer);
        } else {
            ++peer;
        }
    }
}

void StreamModel::adopt(Peer peer)
{
    std::uint64_t id = 0;
    if (::recv(peer.descriptor(), &id, nameSize, MSG_DONTWAIT) != static_cast<ssize_t>(nameSize))
        return; // reset before it said anything
    const auto stream = std::ranges::find(m_streams, id, &Stream::id);
    if (stream != m_streams.end())
        stream->far.emplace(std::move(peer), 2 * id + 1, 2 * id);
}

void StreamModel::act(Stream &stream)
{
    constexpr unsigned most = 60'000;
    ModelEnd &end = stream.far && below(2) == 0 ? *stream.far : stream.client;
    const unsigned choice = below(100);
    if (choice < 45)
        end.send(1 + below(most));
    else if (choice < 88)
        m_isBroken = !end.receive(1 + below(2 * most)) || m_isBroken;
    else if (choice < 99)
        end.finish();
    else {
        end.reset();
        stream.mayBeCut = true;
    }
}

void StreamModel::look(Stream &stream)
{
    for (ModelEnd *end : {&stream.client, stream.far ? &*stream.far : nullptr})
        if (end && end->state() == ModelEnd::State::cut && !stream.mayBeCut)
            m_isBroken = true;
}

/// An end in order is one only with every byte.
bool StreamModel::isDone(const Stream &stream)
{
    using State = ModelEnd::State;
    if (stream.client.state() == State::cut || (stream.far && stream.far->state() == State::cut))
        return true;
    if (!stream.far || stream.client.state() != State::ended || stream.far->state() != State::ended)
        return false;
    if (stream.client.received() != stream.far->sent() || stream.far->received() != stream.client.sent())
        m_isBroken = true;
    ++m_whole;
    return true;
}

bool StreamModel::settle()
{
    const bool isSettled = becomesTrue([this] {
        acceptAll();
        for (auto stream = m_streams.begin(); stream != m_streams.end();) {
            for (ModelEnd *end : {&stream->client, stream->far ? &*stream->far : nullptr}) {
                if (end && stream->far && !end->isFinished())
                    end->finish();
                if (end && !end->receive(SIZE_MAX))
                    m_isBroken = true;
            }
            look(*stream);
            stream =
                isDone(*stream) || (!stream->far && stream->mayBeCut) ? m_streams.erase(stream) : std::next(stream);
        }
        return m_streams.empty();
    });
    for (Gate &gate : m_gates)
        gate.door->stop();
    return isSettled && becomesTrue([this] { return active() == 0; });
}

std::int64_t StreamModel::active() const
{
    std::int64_t sum = 0;
    for (const Gate &gate : m_gates)
        sum += gate.door->tally().active;
    return sum;
}

} // namespace veranox::test
