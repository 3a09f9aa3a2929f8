#include "Publications/VeranoxPublicationOperations.h"
#include "Profiles/VeranoxGroupedByProfile.h"
#include "Publications/VeranoxPublicationErrorMessage.h"
#include "State/VeranoxState.h"

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

VeranoxPublicationOperations::VeranoxPublicationOperations(VeranoxState &state, VeranoxAPIClientProtocol &client)
    : m_state(state),
      m_client(client)
{
}

QList<VeranoxProfile> VeranoxPublicationOperations::publishableProfiles() const
{
    QList<VeranoxProfile> publishable = inSharedProfileOrder(m_state.profiles());
    publishable.removeIf([](const VeranoxProfile &profile) { return profile.backend != "tsnet"_L1; });
    return publishable;
}

QList<std::pair<VeranoxProfile, QList<VeranoxPublication>>> VeranoxPublicationOperations::byProfile() const
{
    return groupedByProfile(m_state.profiles(), m_state.publications());
}

std::optional<QString> VeranoxPublicationOperations::unavailableReason() const
{
    if (m_state.isQuitting() || m_state.isRestartingRouter())
        return u"Wait for the current operation to finish."_s;
    if (m_state.serviceState().isOnline())
        return std::nullopt;
    return u"Start the Veranox service to add or edit publications — the configuration is read and written through it."_s;
}

jobs::Async<Result> VeranoxPublicationOperations::save(VeranoxPublicationDraft draft)
{
    const auto publication = draft.makePublication();
    if (!publication)
        co_return Result::failure(publication.error().message);
    if (const auto conflict = this->conflict(draft))
        co_return Result::failure(*conflict);
    co_return co_await apply(m_client.savePublication(draft.normalName(), draft.originalName, *publication),
        savedSentence(draft), u"The Veranox service is not running, so the publication was not saved."_s);
}

// The first reason why the service would refuse the draft, as far as it can be known here.
std::optional<QString> VeranoxPublicationOperations::conflict(const VeranoxPublicationDraft &draft) const
{
    if (auto conflict = draft.nameConflict(m_state.publications()))
        return conflict;
    if (auto problem = draft.profileProblem(m_state.profiles()))
        return problem;
    return draft.portConflict(m_state.publications());
}

jobs::Async<Result> VeranoxPublicationOperations::remove(QString name)
{
    co_return co_await apply(m_client.deletePublication(name), u"Publication deleted."_s,
        u"The Veranox service is not running, so the publication was not deleted."_s);
}

jobs::Async<Result> VeranoxPublicationOperations::restart(QString name)
{
    const Result result = co_await apply(m_client.restartPublication(name), u"Publication "_s + name + u" restarted."_s,
        u"The Veranox service is not running, so the publication was not restarted."_s);
    tellOfFailure(name, result);
    co_return result;
}

jobs::Async<Result> VeranoxPublicationOperations::setEnabled(QString name, bool enabled)
{
    auto change = enabled ? m_client.startPublication(name) : m_client.stopPublication(name);
    const QString verb = enabled ? u" started."_s : u" stopped."_s;
    const Result result = co_await apply(std::move(change), u"Publication "_s + name + verb,
        u"The Veranox service is not running, so the publication was not changed."_s);
    tellOfFailure(name, result);
    if (result.isFailure())
        if (auto fresh = co_await m_client.fetchPublications())
            m_state.adoptPublications(*std::move(fresh));
    co_return result;
}

jobs::Async<Result> VeranoxPublicationOperations::apply(
    VeranoxAPICall<QList<VeranoxPublication>> change, QString success, QString unavailable)
{
    auto fresh = co_await std::move(change);
    if (!fresh) {
        if (fresh.error().isCancellation())
            co_return Result::cancelled();
        co_return Result::failure(VeranoxPublicationErrorMessage::message(fresh.error(), unavailable));
    }
    m_state.adoptPublications(*std::move(fresh));
    co_return Result::success(success);
}

void VeranoxPublicationOperations::tellOfFailure(const QString &publication, const Result &result)
{
    if (result.isFailure())
        m_state.conclude(result.about(u"Publication "_s + publication));
}
