#pragma once
#include "API/Records/VeranoxEditablePublication.h"
#include "API/Records/VeranoxProfile.h"
#include "API/Records/VeranoxPublication.h"
#include "API/Values/VeranoxDraftError.h"
#include "Publications/VeranoxPublicationReach.h"
#include <QUuid>
#include <optional>

// A publication as a person types it. Every text stays as typed until makePublication().
struct VeranoxPublicationDraft {
    QUuid id = QUuid::createUuid(); // of this edit
    std::optional<QString> originalName; // of the publication being edited; absent for a new one
    QString name;
    QString displayName; // empty: the name serves as the label
    QString profile; // name of the profile on whose tailnet it is reached
    QString target; // loopback host:port of the local service
    QString port; // tailnet port
    bool tls = false; // the service terminates TLS on the tailnet port
    VeranoxPublicationReach reach = VeranoxPublicationReach::tailnet;
    bool disabled = false;

    VeranoxPublicationDraft() = default;
    explicit VeranoxPublicationDraft(const VeranoxPublication &publication);

    // Whether no publication is replaced.
    bool isNew() const { return !originalName; }

    // The name that goes to the service: trimmed and in lower case.
    QString normalName() const;

    // Whether the field shows no error; an empty one shows none.
    bool isValidName() const;
    bool isValidTarget() const;
    bool isValidPort() const;

    // Whether there is a point in trying to save. Conflicts with others do not count.
    bool isReadyToSave() const;

    // Why the name is taken by another publication, if it is.
    std::optional<QString> nameConflict(const QList<VeranoxPublication> &existing) const;

    // Why the port is taken on that profile by another publication, if it is.
    std::optional<QString> portConflict(const QList<VeranoxPublication> &existing) const;

    // Why the profile cannot publish, if it cannot.
    std::optional<QString> profileProblem(const QList<VeranoxProfile> &profiles) const;

    // Whether both would have the service do the same; label and switch do not count.
    bool hasSameContent(const VeranoxPublicationDraft &other) const;

    // The publication to save under normalName(), or the first problem.
    VeranoxDraftResult<VeranoxEditablePublication> makePublication() const;

    bool operator==(const VeranoxPublicationDraft &) const = default;
};

Q_DECLARE_METATYPE(VeranoxPublicationDraft)
