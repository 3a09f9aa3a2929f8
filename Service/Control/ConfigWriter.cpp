#include "Service/Control/ConfigWriter.h"

#include "Service/Text/Refusal.h"
#include "Service/Text/ShownPath.h"
#include "Service/Text/Timestamps.h"

namespace veranox {

namespace asio = boost::asio;

namespace {

/// What a save needs, so that it can go on although nobody waits for it any more.
struct Save {
    ConfigFile file;
    ConfigDocument document;
    std::shared_ptr<const std::string> knownText; // what the file should hold so far
    ConfigWriter::IfChanged ifChanged;
    std::string moment;
};

struct Saved {
    ConfigDraft draft;
    Durability durability;
};

Saved write(Save save)
{
    const bool isChanged = save.file.holdsOtherThan(*save.knownText);
    if (isChanged && save.ifChanged == ConfigWriter::IfChanged::refuse)
        throw Refusal(Refusal::Kind::conflict,
            "The configuration file " + shownPath(save.file.path())
                + " was changed by another program; restart the service so that it takes the change over.");
    ConfigDraft draft = save.file.draft(std::move(save.document));
    if (isChanged)
        save.file.keepCopy(save.moment);
    const Durability durability = save.file.write(*draft.text);
    return {.draft = std::move(draft), .durability = durability};
}

} // namespace

ConfigWriter::ConfigWriter(ConfigStore &store, Traffic &traffic, const TimeSource &time, Worker &worker, Log &log)
    : m_store(store),
      m_traffic(traffic),
      m_time(time),
      m_worker(worker),
      m_log(log)
{
}

asio::awaitable<void> ConfigWriter::commit(ConfigDocument document, IfChanged ifChanged)
{
    Save save{.file = m_store.disk(),
        .document = std::move(document),
        .knownText = m_store.knownText(),
        .ifChanged = ifChanged,
        .moment = fileTimestamp(m_time.wallNow())};
    Saved saved = co_await m_worker.run([save = std::move(save)]() mutable { return write(std::move(save)); });
    m_store.adopt(std::move(saved.draft));
    if (saved.durability == Durability::unconfirmed)
        m_log.write(LogLevel::warn, "config_unconfirmed",
            "the configuration is saved, but the disk did not confirm that it would outlast a loss of power",
            {{"config_generation", m_store.generation()}});
    m_traffic.apply(m_store.snapshot());
}

} // namespace veranox
