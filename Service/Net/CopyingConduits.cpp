#include "Service/Net/Conduit.h"

#include <array>
#include <cerrno>
#include <sys/socket.h>
#include <vector>

namespace veranox {

namespace {

using Buffer = std::array<char, Conduit::pieceSize>;

bool wouldBlock()
{
    return errno == EAGAIN || errno == EWOULDBLOCK;
}

class CopyingConduit final : public Conduit {
public:
    explicit CopyingConduit(Buffer &shared) : m_shared(shared) { }

    Flow fill(int from) override
    {
        ssize_t count = 0;
        do
            count = ::recv(from, m_shared.data(), m_shared.size(), 0);
        while (count < 0 && errno == EINTR);
        if (count < 0)
            return wouldBlock() ? Flow::wouldBlock : Flow::failed;
        m_isFresh = count > 0;
        m_held = static_cast<std::size_t>(count);
        return count == 0 ? Flow::ended : Flow::moved;
    }

    /// Whoever drains right after filling sends out of the shared buffer; what is left then moves into one of its own,
    /// before another conduit fills the shared one.
    Flow drain(int to) override
    {
        const char *data = m_isFresh ? m_shared.data() : m_own.data() + m_done;
        ssize_t count = 0;
        do
            count = ::send(to, data, m_held, MSG_NOSIGNAL);
        while (count < 0 && errno == EINTR);
        if (count < 0 && !wouldBlock())
            return Flow::failed;
        take(data, count < 0 ? 0 : static_cast<std::size_t>(count));
        return count < 0 ? Flow::wouldBlock : Flow::moved;
    }

    bool isEmpty() const override { return m_held == 0; }

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

    Buffer &m_shared;
    std::vector<char> m_own;
    std::size_t m_done = 0; // of m_own
    std::size_t m_held = 0;
    bool m_isFresh = false; // what is held lies in the shared buffer
};

class CopyingConduits final : public Conduits {
public:
    std::unique_ptr<Conduit> make() override { return std::make_unique<CopyingConduit>(m_buffer); }

private:
    Buffer m_buffer{};
};

} // namespace

std::unique_ptr<Conduits> copyingConduits()
{
    return std::make_unique<CopyingConduits>();
}

} // namespace veranox
