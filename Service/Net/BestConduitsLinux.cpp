#include "Service/Net/Conduit.h"

#include "Service/Files/Descriptor.h"
#include <array>
#include <cerrno>
#include <fcntl.h>
#include <optional>
#include <vector>

namespace veranox {

namespace {

struct Pipe {
    Descriptor out;
    Descriptor in;
};

/// Pipes that carry nothing at the moment. An idle connection has none.
class PipePool {
public:
    std::optional<Pipe> take()
    {
        if (m_idle.empty())
            return makePipe();
        std::optional<Pipe> pipe(std::move(m_idle.back()));
        m_idle.pop_back();
        return pipe;
    }

    /// Only an empty one.
    void giveBack(Pipe pipe)
    {
        constexpr std::size_t kept = 16;
        if (m_idle.size() < kept)
            m_idle.push_back(std::move(pipe));
    }

private:
    static std::optional<Pipe> makePipe()
    {
        std::array<int, 2> ends{};
        if (::pipe2(ends.data(), O_CLOEXEC | O_NONBLOCK) != 0)
            return std::nullopt;
        return Pipe{Descriptor(ends[0]), Descriptor(ends[1])};
    }

    std::vector<Pipe> m_idle;
};

/// Moves pages from socket to socket inside the system, through a pipe.
class SplicingConduit final : public Conduit {
public:
    explicit SplicingConduit(PipePool &pool) : m_pool(pool) { }
    SplicingConduit(const SplicingConduit &) = delete;
    SplicingConduit &operator=(const SplicingConduit &) = delete;
    ~SplicingConduit() override = default;

    Flow fill(int from) override
    {
        std::optional<Pipe> pipe = m_pool.take();
        if (!pipe)
            return Flow::failed;
        const ssize_t count = move(from, pipe->in.get(), pieceSize);
        const int problem = errno;
        if (count > 0) {
            m_pipe.emplace(std::move(*pipe));
            m_held = static_cast<std::size_t>(count);
            return Flow::moved;
        }
        m_pool.giveBack(std::move(*pipe));
        if (count == 0)
            return Flow::ended;
        return problem == EAGAIN ? Flow::wouldBlock : Flow::failed;
    }

    Flow drain(int to) override
    {
        const ssize_t count = move(m_pipe->out.get(), to, m_held);
        if (count < 0)
            return errno == EAGAIN ? Flow::wouldBlock : Flow::failed;
        m_held -= static_cast<std::size_t>(count);
        if (m_held == 0) {
            m_pool.giveBack(std::move(*m_pipe));
            m_pipe.reset();
        }
        return Flow::moved;
    }

    bool isEmpty() const override { return m_held == 0; }

private:
    static ssize_t move(int from, int to, std::size_t most)
    {
        ssize_t count = 0;
        do
            count = ::splice(from, nullptr, to, nullptr, most, SPLICE_F_MOVE | SPLICE_F_NONBLOCK);
        while (count < 0 && errno == EINTR);
        return count;
    }

    PipePool &m_pool;
    std::optional<Pipe> m_pipe; // while it holds something
    std::size_t m_held = 0;
};

class SplicingConduits final : public Conduits {
public:
    std::unique_ptr<Conduit> make() override { return std::make_unique<SplicingConduit>(m_pool); }

private:
    PipePool m_pool;
};

} // namespace

std::unique_ptr<Conduits> bestConduits()
{
    return std::make_unique<SplicingConduits>();
}

} // namespace veranox
