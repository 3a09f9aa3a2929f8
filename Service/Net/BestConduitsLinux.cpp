#include "Service/Files/Descriptor.h"
#include "Service/Net/BufferedConduit.h"
#include <cerrno>
#include <fcntl.h>
#include <optional>

namespace veranox {

namespace {

struct Pipe {
    Descriptor out;
    Descriptor in;
};

/// Pipes that carry nothing at the moment. An idle connection has none.
class PipePool {
public:
    explicit PipePool(PipeAllowance &allowance) : m_allowance(allowance) { m_idle.reserve(kept); }
    PipePool(const PipePool &) = delete;
    PipePool &operator=(const PipePool &) = delete;
    ~PipePool()
    {
        while (!m_idle.empty())
            drop(take());
    }

    /// Nothing when the system or the allowance has none left.
    std::optional<Pipe> take()
    {
        if (m_idle.empty())
            return makePipe();
        std::optional<Pipe> pipe(std::move(m_idle.back()));
        m_idle.pop_back();
        return pipe;
    }

    /// Only an empty one.
    void giveBack(std::optional<Pipe> pipe)
    {
        if (m_idle.size() < kept)
            m_idle.push_back(std::move(*pipe));
        else
            drop(std::move(pipe));
    }

    /// Closes it, whatever it holds.
    void drop(std::optional<Pipe> pipe)
    {
        pipe.reset();
        m_allowance.givePipeBack();
    }

private:
    static constexpr std::size_t kept = 16;

    std::optional<Pipe> makePipe()
    {
        if (!m_allowance.takePipe())
            return std::nullopt;
        std::array<int, 2> ends{};
        if (::pipe2(ends.data(), O_CLOEXEC | O_NONBLOCK) == 0)
            return Pipe{Descriptor(ends[0]), Descriptor(ends[1])};
        m_allowance.givePipeBack();
        return std::nullopt;
    }

    PipeAllowance &m_allowance;
    std::vector<Pipe> m_idle;
};

/// Moves pages from socket to socket inside the system, through a pipe; copies while there is no pipe to be had.
class SplicingConduit final : public Conduit {
public:
    SplicingConduit(int from, int to, PipePool &pipes, ConduitBuffer &buffer)
        : m_from(from),
          m_to(to),
          m_pipes(pipes),
          m_copy(PlainEnd(from), PlainEnd(to), buffer)
    {
    }
    SplicingConduit(const SplicingConduit &) = delete;
    SplicingConduit &operator=(const SplicingConduit &) = delete;
    ~SplicingConduit() override
    {
        if (m_pipe)
            m_pipes.drop(std::move(m_pipe));
    }

    Flow fill() override
    {
        std::optional<Pipe> pipe = m_pipes.take();
        if (!pipe)
            return m_copy.fill();
        const ssize_t count = move(m_from, pipe->in.get(), pieceSize);
        const int problem = errno;
        if (count > 0) {
            m_pipe.emplace(std::move(*pipe));
            m_held = static_cast<std::size_t>(count);
            return Flow::moved;
        }
        m_pipes.giveBack(std::move(pipe));
        if (count == 0)
            return Flow::ended;
        if (isShortage(problem))
            return m_copy.fill();
        return problem == EAGAIN ? Flow::awaitsRead : Flow::failed;
    }

    Flow drain() override
    {
        if (m_copy.held() > 0)
            return m_copy.drain();
        const ssize_t count = move(m_pipe->out.get(), m_to, m_held);
        if (count < 0)
            return errno == EAGAIN ? Flow::awaitsWrite : Flow::failed;
        m_held -= static_cast<std::size_t>(count);
        if (m_held == 0) {
            m_pipes.giveBack(std::move(m_pipe));
            m_pipe.reset();
        }
        return Flow::moved;
    }

    Flow finish() override { return m_copy.finish(); }
    std::size_t held() const override { return m_held + m_copy.held(); }

private:
    static ssize_t move(int from, int to, std::size_t most)
    {
        ssize_t count = 0;
        do
            count = ::splice(from, nullptr, to, nullptr, most, SPLICE_F_MOVE | SPLICE_F_NONBLOCK);
        while (count < 0 && errno == EINTR);
        return count;
    }

    static bool isShortage(int problem) { return problem == ENOMEM || problem == EMFILE || problem == ENFILE; }

    int m_from;
    int m_to;
    PipePool &m_pipes;
    std::optional<Pipe> m_pipe; // while it holds something
    std::size_t m_held = 0; // in the pipe
    BufferedConduit<PlainEnd, PlainEnd> m_copy;
};

class SplicingConduits final : public BufferedConduits {
public:
    explicit SplicingConduits(PipeAllowance &allowance) : m_pipes(allowance) { }
    std::unique_ptr<Conduit> make(int from, int to) override
    {
        return std::make_unique<SplicingConduit>(from, to, m_pipes, buffer());
    }

private:
    PipePool m_pipes;
};

} // namespace

std::unique_ptr<Conduits> bestConduits(PipeAllowance &allowance)
{
    return std::make_unique<SplicingConduits>(allowance);
}

} // namespace veranox
