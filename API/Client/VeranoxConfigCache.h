#pragma once
#include "API/Client/VeranoxAPIFailure.h"
#include "Base/Jobs/Jobs.h"
#include <QByteArray>
#include <functional>
#include <optional>

// The bytes of the configuration document, kept for a moment: the two readings that every refresh makes side by side
// cost one request. Main thread only.
class VeranoxConfigCache {
public:
    static constexpr auto timeToLive = std::chrono::seconds(2);

    using Fetch = std::function<VeranoxAPICall<QByteArray>()>;
    VeranoxConfigCache(jobs::MainQueue &queue, Fetch fetch);

    // The kept bytes while they are younger than timeToLive; else those of the fetch that is running; else those of a
    // new fetch, a job of this cache with the ambient text of this caller. Who is cancelled leaves at once, and starts
    // no fetch; one that runs goes on, whoever is left. A failure reaches everyone who waits for the fetch and is not
    // kept.
    VeranoxAPICall<QByteArray> data();

    // What is kept is old, and so is what a running fetch will bring: it reaches those who wait for it and nobody else.
    void invalidate();

private:
    struct Entry {
        QByteArray data;
        jobs::Clock::Time fetchedAt;
    };
    VeranoxAPICall<QByteArray> fetchAndKeep(std::uint64_t epoch);

    jobs::MainQueue &m_queue;
    const Fetch m_fetch;
    std::optional<Entry> m_entry;
    jobs::Job<VeranoxAPIResult<QByteArray>> m_inFlight;
    std::uint64_t m_epoch = 0; // counts invalidations
    jobs::JobScope m_jobs;
};
