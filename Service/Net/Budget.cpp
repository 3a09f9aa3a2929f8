#include "Service/Net/Budget.h"

#include <algorithm>
#include <filesystem>
#include <sys/resource.h>

namespace veranox {

namespace {

constexpr std::size_t perStream = 2;
constexpr std::size_t perPipe = 2;

/// A crowd of one listener leaves this part of all to the others.
constexpr std::size_t promisedPart = 4;

/// Pipes only make it faster, so streams come first.
constexpr std::size_t pipePart = 4;

std::size_t openNow()
{
    std::size_t count = 0;
    std::error_code failure;
    for (std::filesystem::directory_iterator entry("/dev/fd", failure), end; !failure && entry != end;
        entry.increment(failure))
        ++count;
    return count;
}

} // namespace

Budget::Limits Budget::ofThisProcess()
{
    constexpr std::size_t mostForControl = 256;
    constexpr std::size_t whereUnlimited = std::size_t{1} << 20U;
    rlimit limit{};
    std::size_t all = whereUnlimited;
    if (::getrlimit(RLIMIT_NOFILE, &limit) == 0 && limit.rlim_cur != RLIM_INFINITY)
        all = limit.rlim_cur;
    const std::size_t taken = openNow() + std::min(mostForControl, all / 4);
    return {.descriptors = all > taken ? all - taken : 0};
}

Budget::Budget(Limits limits, std::function<void()> strained)
    : m_strained(std::move(strained)),
      m_forStreams(limits.descriptors - limits.descriptors / pipePart),
      m_forPipes(static_cast<std::ptrdiff_t>(limits.descriptors / pipePart)),
      m_patience(limits.patience)
{
}

std::shared_ptr<Budget::Share> Budget::openShare()
{
    auto share = std::make_shared<Share>();
    const std::scoped_lock lock(m_mutex);
    m_shares.push_back(share);
    return share;
}

void Budget::closeShare(Share &share)
{
    const std::scoped_lock lock(m_mutex);
    std::erase_if(m_shares, [&](const auto &other) { return other.get() == &share; });
}

/// What each open listener may count on.
std::size_t Budget::promised() const
{
    return m_shares.empty() ? 0 : m_forStreams / promisedPart / m_shares.size();
}

std::size_t Budget::unclaimedOfOthers(const Share &share) const
{
    const std::size_t least = promised();
    std::size_t unclaimed = 0;
    for (const auto &other : m_shares)
        if (other.get() != &share && other->m_used < least)
            unclaimed += least - other->m_used;
    return unclaimed;
}

bool Budget::hasRoom(const Share &share) const
{
    // While less than half is used, no promise can be in danger, and nobody needs to be asked.
    return m_used + perStream <= m_forStreams / 2 || m_used + unclaimedOfOthers(share) + perStream <= m_forStreams;
}

/// Among those whose place would be of use: of the listener that has the most, the one that has waited longest.
Budget::Seat *Budget::longestWaiting(Share &share, Clock::time_point now)
{
    const std::size_t least = promised();
    Share *richest = nullptr;
    const auto consider = [&](Share &candidate) {
        const bool hasSome =
            !candidate.m_waiting.empty() && candidate.m_waiting.front().m_waitsSince + m_patience <= now;
        if (hasSome && (!richest || candidate.m_used > richest->m_used))
            richest = &candidate;
    };
    consider(share);
    for (const auto &other : m_shares)
        if (other->m_used > least)
            consider(*other);
    return richest ? &richest->m_waiting.front() : nullptr;
}

bool Budget::admit(const std::shared_ptr<Share> &share, Seat &seat)
{
    const Clock::time_point now = Clock::now();
    const std::scoped_lock lock(m_mutex);
    if (!hasRoom(*share)) {
        m_strained();
        Seat *victim = longestWaiting(*share, now);
        if (!victim) {
            ++m_strain.refused;
            return false;
        }
        ++m_strain.shed;
        victim->shed();
        release(*victim);
    }
    seat.m_budget = this;
    seat.m_share = share;
    seat.m_waitsSince = now;
    seat.m_isWaiting = true;
    share->m_waiting.push_back(seat);
    share->m_used += perStream;
    m_used += perStream;
    return true;
}

void Budget::stopWaiting(Seat &seat)
{
    if (seat.m_isWaiting)
        seat.m_share->m_waiting.erase(seat.m_share->m_waiting.iterator_to(seat));
    seat.m_isWaiting = false;
}

void Budget::release(Seat &seat)
{
    stopWaiting(seat);
    seat.m_share->m_used -= perStream;
    seat.m_share.reset();
    m_used -= perStream;
}

void Budget::Seat::settle()
{
    if (!m_budget)
        return;
    const std::scoped_lock lock(m_budget->m_mutex);
    stopWaiting(*this);
}

void Budget::Seat::beginToWait()
{
    if (!m_budget)
        return;
    const std::scoped_lock lock(m_budget->m_mutex);
    if (!m_share || m_isWaiting)
        return;
    m_waitsSince = Clock::now();
    m_isWaiting = true;
    m_share->m_waiting.push_back(*this);
}

void Budget::Seat::leave()
{
    if (!m_budget)
        return;
    const std::scoped_lock lock(m_budget->m_mutex);
    if (m_share)
        m_budget->release(*this);
}

bool Budget::takePipe()
{
    const auto cost = static_cast<std::ptrdiff_t>(perPipe);
    if (m_pipes.fetch_add(cost, std::memory_order_relaxed) + cost <= m_forPipes)
        return true;
    givePipeBack();
    return false;
}

void Budget::givePipeBack()
{
    m_pipes.fetch_sub(static_cast<std::ptrdiff_t>(perPipe), std::memory_order_relaxed);
}

Budget::Strain Budget::strain() const
{
    const std::scoped_lock lock(m_mutex);
    return m_strain;
}

std::size_t Budget::used() const
{
    const std::scoped_lock lock(m_mutex);
    return m_used;
}

} // namespace veranox
