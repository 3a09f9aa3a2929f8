#pragma once
#include "API/Client/VeranoxAPIClientProtocol.h"
#include "Publications/VeranoxPublicationActionResult.h"
#include "Publications/VeranoxPublicationDraft.h"
#include <utility>

class VeranoxState;

// What a person does with publications. What the service answers a change with is adopted at once, and the list stays
// on a failure. Main thread only; what it is given outlives it.
class VeranoxPublicationOperations {
public:
    VeranoxPublicationOperations(VeranoxState &state, VeranoxAPIClientProtocol &client);
    Q_DISABLE_COPY_MOVE(VeranoxPublicationOperations)

    // The profiles that can publish, in the shared order.
    QList<VeranoxProfile> publishableProfiles() const;

    // Each profile that has publications, in the shared order of profiles, with its publications in the service's
    // order.
    QList<std::pair<VeranoxProfile, QList<VeranoxPublication>>> byProfile() const;

    // Why publications cannot be changed at present; absent when they can.
    std::optional<QString> unavailableReason() const;

    jobs::Async<VeranoxPublicationActionResult> save(VeranoxPublicationDraft draft);
    jobs::Async<VeranoxPublicationActionResult> remove(QString name);

    // Of these two a failure becomes the last action's message, too. After a failure setEnabled() reads the list again:
    // the service may have switched the publication on although it could not start it.
    jobs::Async<VeranoxPublicationActionResult> restart(QString name);
    jobs::Async<VeranoxPublicationActionResult> setEnabled(QString name, bool enabled);

private:
    std::optional<QString> conflict(const VeranoxPublicationDraft &draft) const;
    jobs::Async<VeranoxPublicationActionResult> apply(
        VeranoxAPICall<QList<VeranoxPublication>> change, QString success, QString unavailable);
    void tellOfFailure(const QString &publication, const VeranoxPublicationActionResult &result);

    VeranoxState &m_state;
    VeranoxAPIClientProtocol &m_client;
};
