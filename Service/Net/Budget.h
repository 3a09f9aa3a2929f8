#pragma once
#include "Service/Net/Conduit.h"
#include <atomic>
#include <boost/intrusive/list.hpp>
#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <vector>

namespace veranox {

/// What the whole process may spend on forwarded streams, in descriptors. A part of it is promised to the listeners in
/// equal shares, so that none can take everything; whatever is left goes to whoever comes. When nothing is left, the
/// stream that has waited longest without being of use makes room: one that is not joined to its target yet, or one of
/// which one side has ended. All calls from any thread.
class Budget final : public PipeAllowance {
public:
    using Clock = std::chrono::steady_clock;
    class Share;

    /// How often there was no room.
    struct Strain {
        std::uint64_t refused = 0;
        std::uint64_t shed = 0;

        bool operator==(const Strain &) const = default;
    };

    /// The place of one stream, which costs two descriptors. Whoever derives from it leaves it before dying.
    class Seat : public boost::intrusive::list_base_hook<> {
    public:
        Seat() = default;
        Seat(const Seat &) = delete;
        Seat &operator=(const Seat &) = delete;
        virtual ~Seat() = default;

        /// The stream carries bytes now: it is not shed any more.
        void settle();
        /// The stream is of little use: it may be shed once it has waited.
        void beginToWait();
        /// Gives the place back. Harmless when repeated.
        void leave();

    protected:
        /// Another takes the place: the stream is to end. Called from any thread, with the budget locked.
        virtual void shed() = 0;

    private:
        friend class Budget;
        Budget *m_budget = nullptr; // since it got a place
        std::shared_ptr<Share> m_share; // while it has a place
        Clock::time_point m_waitsSince;
        bool m_isWaiting = false;
    };

    /// What a listener's streams hold. Lives as long as one of them does, whatever becomes of the listener.
    class Share {
        friend class Budget;
        boost::intrusive::list<Seat, boost::intrusive::constant_time_size<false>> m_waiting; // the longest first
        std::size_t m_used = 0;
    };

    struct Limits {
        std::size_t descriptors = 0;
        /// What waits no longer than that is not shed: otherwise a crowd of newcomers would only displace each other.
        std::chrono::milliseconds patience = std::chrono::seconds(1);
    };

    /// All descriptors that this process may still open, but for a share that control keeps.
    static Limits ofThisProcess();

    /// It must outlive all seats. `strained` is called whenever there was no room, from any thread; it must not call
    /// the budget.
    Budget(Limits limits, std::function<void()> strained);
    Budget(const Budget &) = delete;
    Budget &operator=(const Budget &) = delete;
    ~Budget() override = default;

    std::shared_ptr<Share> openShare();
    /// Nothing is promised to it any more. What its streams hold they keep until they end.
    void closeShare(Share &share);

    /// Gives the stream a place, in which it waits at first. False when there is no room, not even by shedding.
    bool admit(const std::shared_ptr<Share> &share, Seat &seat);

    bool takePipe() override;
    void givePipeBack() override;

    Strain strain() const;
    /// Descriptors that streams hold, pipes not counted.
    std::size_t used() const;

private:
    std::size_t promised() const;
    std::size_t unclaimedOfOthers(const Share &share) const;
    bool hasRoom(const Share &share) const;
    Seat *longestWaiting(Share &share, Clock::time_point now);
    static void stopWaiting(Seat &seat);
    void release(Seat &seat);

    mutable std::mutex m_mutex;
    std::function<void()> m_strained;
    std::vector<std::shared_ptr<Share>> m_shares; // of the listeners that are open
    std::size_t m_forStreams;
    std::ptrdiff_t m_forPipes;
    std::chrono::milliseconds m_patience;
    std::size_t m_used = 0;
    Strain m_strain;
    std::atomic<std::ptrdiff_t> m_pipes = 0;
};

} // namespace veranox
