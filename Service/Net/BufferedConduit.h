#pragma once
#include "Service/Net/Conduit.h"
#include "Service/Net/PlainEnd.h"
#include "Service/Net/TlsSession.h"
#include <array>
#include <span>
#include <vector>

namespace veranox {

using ConduitBuffer = std::array<char, Conduit::pieceSize>;

/// Copies through a buffer that it shares with others. `Source` and `Sink` read and write as PlainEnd does.
template <class Source, class Sink> class BufferedConduit final : public Conduit {
public:
    /// The buffer must outlive it.
    BufferedConduit(Source source, Sink sink, ConduitBuffer &shared)
        : m_shared(shared),
          m_source(std::move(source)),
          m_sink(std::move(sink))
    {
    }

    Flow fill() override
    {
        const Transfer taken = m_source.read(m_shared);
        m_held = taken.count;
        m_isFresh = m_held > 0;
        return taken.flow;
    }

    /// What the sink leaves moves out of the shared buffer into one of its own.
    Flow drain() override
    {
        const char *data = m_isFresh ? m_shared.data() : m_own.data() + m_done;
        const Transfer sent = m_sink.write(std::span(data, m_held));
        if (sent.flow == Flow::moved || (m_isFresh && sent.flow != Flow::failed))
            take(data, sent.count);
        return sent.flow;
    }

    Flow finish() override { return m_sink.finish(); }
    std::size_t held() const override { return m_held; }

private:
    void take(const char *data, std::size_t count)
    {
        m_held -= count;
        if (m_held == 0)
            std::vector<char>().swap(m_own);
        else if (m_isFresh)
            m_own.assign(data + count, data + count + m_held);
        m_done = m_isFresh || m_held == 0 ? 0 : m_done + count;
        m_isFresh = false;
    }

    ConduitBuffer &m_shared;
    Source m_source;
    Sink m_sink;
    std::vector<char> m_own;
    std::size_t m_done = 0; // of m_own
    std::size_t m_held = 0;
    bool m_isFresh = false; // what is held lies in the shared buffer
};

/// Makes those of them that every system needs.
class BufferedConduits : public Conduits {
public:
    std::unique_ptr<Conduit> makeDecrypting(TlsSession &from, int to) override
    {
        return std::make_unique<BufferedConduit<TlsEnd, PlainEnd>>(TlsEnd(from), PlainEnd(to), m_buffer);
    }
    std::unique_ptr<Conduit> makeEncrypting(int from, TlsSession &to) override
    {
        return std::make_unique<BufferedConduit<PlainEnd, TlsEnd>>(PlainEnd(from), TlsEnd(to), m_buffer);
    }

protected:
    ConduitBuffer &buffer() { return m_buffer; }

private:
    ConduitBuffer m_buffer{};
};

} // namespace veranox
