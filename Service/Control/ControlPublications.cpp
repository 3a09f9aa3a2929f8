#include "Service/Control/ControlApi.h"
#include "Service/Control/NamedChanges.h"
#include "Service/Control/PublicationSave.h"
#include "Service/Text/Refusal.h"

namespace veranox {

namespace {

constexpr std::string_view kind = "publication";

} // namespace

ControlAnswer ControlApi::savePublication(const Call &call)
{
    commit(withPublication(m_parts.config.document(), readPublicationSave(call.request.body), m_parts.port));
    return publications(call);
}

ControlAnswer ControlApi::deletePublication(const Call &call)
{
    ConfigDocument next = m_parts.config.document();
    requireNamed(kind, next.publications, call.name);
    std::erase_if(next.publications, [&](const auto &publication) { return publication.first == call.name; });
    commit(std::move(next));
    return publications(call);
}

ControlAnswer ControlApi::startPublication(const Call &call)
{
    constexpr unsigned unavailable = 503;
    ConfigDocument next = m_parts.config.document();
    PublicationSettings &publication = requireNamed(kind, next.publications, call.name);
    if (publication.disabled) {
        publication.disabled = false;
        commit(std::move(next));
    } else if (m_parts.traffic.publicationStatus(call.name).state == "error") {
        m_parts.traffic.restartPublication(call.name);
    }
    const PublicationSettings &saved = *findNamed(m_parts.config.document().publications, call.name);
    if (const PublicationStatus status = publicationStatus(call.name, saved); status.state == "error")
        return refusal(unavailable,
            "The publication " + shownName(call.name)
                + " was switched on and saved, but it could not be started: " + status.lastError);
    return publications(call);
}

ControlAnswer ControlApi::stopPublication(const Call &call)
{
    ConfigDocument next = m_parts.config.document();
    PublicationSettings &publication = requireNamed(kind, next.publications, call.name);
    if (!publication.disabled) {
        publication.disabled = true;
        commit(std::move(next));
    }
    return publications(call);
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
