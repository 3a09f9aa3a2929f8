// What a person does with publications.
#include "Core/VeranoxStore.h"
#include "Profiles/VeranoxGroupedByProfile.h"
#include "Publications/VeranoxPublicationErrorMessage.h"

using namespace Qt::StringLiterals;
using Result = VeranoxPublicationActionResult;

namespace {

QString savedSentence(const VeranoxPublicationDraft &draft)
{
    if (draft.reach == VeranoxPublicationReach::funnel)
        return u"Publication saved. It is not being served: this version does not publish to the public internet."_s;
    return draft.originalName ? u"Publication saved."_s : u"Publication created."_s;
}

} // namespace

QList<VeranoxProfile> VeranoxStore::publishableProfiles() const
{
    QList<VeranoxProfile> publishable = inSharedProfileOrder(m_profiles);
    publishable.removeIf([](const VeranoxProfile &profile) { return profile.backend != "tsnet"_L1; });
    return publishable;
}

QList<std::pair<VeranoxProfile, QList<VeranoxPublication>>> VeranoxStore::publicationsByProfile() const
{
    return groupedByProfile(m_profiles, m_publications);
}

std::optional<QString> VeranoxStore::publicationsUnavailableReason() const
{
    if (m_isQuitting || m_isRestartingRouter)
        return u"Wait for the current operation to finish."_s;
    if (m_serviceState.isOnline())
        return std::nullopt;
    return u"Start the Veranox service to add or edit publications — the configuration is read and written through it."_s;
}

jobs::Async<Result> VeranoxStore::savePublicationDraft(VeranoxPublicationDraft draft)
{
    const auto publication = draft.makePublication();
    if (!publication)
        co_return Result::failure(publication.error().message);
    if (const auto conflict = publicationConflict(draft))
        co_return Result::failure(*conflict);
    co_return co_await applyPublications(
        m_apiClient->savePublication(draft.normalName(), draft.originalName, *publication), savedSentence(draft),
        u"The Veranox service is not running, so the publication was not saved."_s);
}

// The first reason why the service would refuse the draft, as far as it can be known here.
std::optional<QString> VeranoxStore::publicationConflict(const VeranoxPublicationDraft &draft) const
{
    if (auto conflict = draft.nameConflict(m_publications))
        return conflict;
    if (auto problem = draft.profileProblem(m_profiles))
        return problem;
    return draft.portConflict(m_publications);
}

jobs::Async<Result> VeranoxStore::deletePublication(QString name)
{
    co_return co_await applyPublications(m_apiClient->deletePublication(name), u"Publication deleted."_s,
        u"The Veranox service is not running, so the publication was not deleted."_s);
}

jobs::Async<Result> VeranoxStore::restartPublication(QString name)
{
    const Result result =
        co_await applyPublications(m_apiClient->restartPublication(name), u"Publication "_s + name + u" restarted."_s,
            u"The Veranox service is not running, so the publication was not restarted."_s);
    tellOfFailure(name, result);
    co_return result;
}

jobs::Async<Result> VeranoxStore::setPublicationEnabled(QString name, bool enabled)
{
    auto change = enabled ? m_apiClient->startPublication(name) : m_apiClient->stopPublication(name);
    const QString verb = enabled ? u" started."_s : u" stopped."_s;
    const Result result = co_await applyPublications(std::move(change), u"Publication "_s + name + verb,
        u"The Veranox service is not running, so the publication was not changed."_s);
    tellOfFailure(name, result);
    if (!result.isSuccess() && !result.isCancelled)
        if (auto fresh = co_await m_apiClient->fetchPublications())
            adoptPublications(*std::move(fresh));
    co_return result;
}

jobs::Async<Result> VeranoxStore::applyPublications(
    VeranoxAPICall<QList<VeranoxPublication>> change, QString success, QString unavailable)
{
    auto fresh = co_await std::move(change);
    if (!fresh) {
        if (fresh.error().isCancellation())
            co_return Result::cancelled();
        co_return Result::failure(VeranoxPublicationErrorMessage::message(fresh.error(), unavailable));
    }
    adoptPublications(*std::move(fresh));
    co_return Result::success(success);
}

void VeranoxStore::tellOfFailure(const QString &publication, const Result &result)
{
    if (!result.isSuccess() && !result.isCancelled)
        setLastActionMessage(u"Publication "_s + publication + u": "_s + result.message);
}
