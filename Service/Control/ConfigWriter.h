#pragma once
#include "Service/Config/ConfigStore.h"
#include "Service/Files/Worker.h"
#include "Service/Log/Log.h"
#include "Service/Time/TimeSource.h"
#include "Service/Traffic/Traffic.h"
#include <boost/asio/awaitable.hpp>

namespace veranox {

/// The one way by which a document becomes the current one. What it is given must outlive it.
class ConfigWriter {
public:
    /// What happens to a file that another program has changed since the service last read or wrote it: a refusal, or a
    /// copy of it beside the new one.
    enum class IfChanged { refuse, keepCopy };

    ConfigWriter(ConfigStore &store, Traffic &traffic, const TimeSource &time, Worker &worker, Log &log);

    /// Saves the document on the worker and lets the traffic follow it. Throws Refusal or ServiceProblem; then nothing
    /// has changed. Until it is done, the current document is the old one, and nobody else may save: see SaveTurns.
    boost::asio::awaitable<void> commit(ConfigDocument document, IfChanged ifChanged);

private:
    ConfigStore &m_store;
    Traffic &m_traffic;
    const TimeSource &m_time;
    Worker &m_worker;
    Log &m_log;
};

} // namespace veranox
