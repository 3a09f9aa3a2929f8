#include "Service/Control/ControlApi.h"
#include "Service/Control/NamedChanges.h"
#include "Service/Control/PublicationSave.h"
#include "Service/Text/Refusal.h"

namespace veranox {

namespace asio = boost::asio;

namespace {

constexpr std::string_view kind = "publication";

} // namespace

asio::awaitable<ControlAnswer> ControlApi::savePublication(Call call)
{
    SaveRequest<PublicationSettings> save = readPublicationSave(call.request.body);
    const SaveTurns::Turn turn = co_await m_turns.take();
    co_await commit(withPublication(m_parts.config.document(), std::move(save), m_parts.port));
    co_return publications(call);
}

asio::awaitable<ControlAnswer> ControlApi::deletePublication(Call call)
{
    const SaveTurns::Turn turn = co_await m_turns.take();
    ConfigDocument next = m_parts.config.document();
    requireNamed(kind, next.publications, call.name);
    std::erase_if(next.publications, [&](const auto &publication) { return publication.first == call.name; });
    co_await commit(std::move(next));
    co_return publications(call);
}

asio::awaitable<ControlAnswer> ControlApi::startPublication(Call call)
{
    const SaveTurns::Turn turn = co_await m_turns.take();
    constexpr unsigned unavailable = 503;
    ConfigDocument next = m_parts.config.document();
    PublicationSettings &publication = requireNamed(kind, next.publications, call.name);
    if (publication.disabled) {
        publication.disabled = false;
        co_await commit(std::move(next));
    } else if (m_parts.traffic.publicationStatus(call.name).state == "error") {
        m_parts.traffic.restartPublication(call.name);
    }
    const PublicationSettings &saved = *findNamed(m_parts.config.document().publications, call.name);
    if (const PublicationStatus status = publicationStatus(call.name, saved); status.state == "error")
        co_return refusal(unavailable,
            "The publication " + shownName(call.name)
                + " was switched on and saved, but it could not be started: " + status.lastError);
    co_return publications(call);
}

asio::awaitable<ControlAnswer> ControlApi::stopPublication(Call call)
{
    const SaveTurns::Turn turn = co_await m_turns.take();
    ConfigDocument next = m_parts.config.document();
    PublicationSettings &publication = requireNamed(kind, next.publications, call.name);
    if (!publication.disabled) {
        publication.disabled = true;
        co_await commit(std::move(next));
    }
    co_return publications(call);
}

ControlAnswer ControlApi::restartPublication(const Call &call)
{
    ConfigDocument document = m_parts.config.document();
    if (requireNamed(kind, document.publications, call.name).disabled)
        throw Refusal(Refusal::Kind::conflict,
            "The publication " + shownName(call.name) + " is switched off; switch it on instead.");
    m_parts.traffic.restartPublication(call.name);
    return publications(call);
}

} // namespace veranox
