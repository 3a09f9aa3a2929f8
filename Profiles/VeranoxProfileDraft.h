#pragma once
#include "API/Records/VeranoxEditableConfig.h"
#include "API/Values/VeranoxDraftError.h"
#include <QMetaType>
#include <QUuid>
#include <optional>

// What the service assigns to a profile when it first runs.
struct VeranoxProfileRuntimeFields {
    QString stateDir;
    QString socket;
    QString httpProxy;
    QString socks5Proxy;
    qint64 port = 0;

    // The same without blanks round the texts.
    VeranoxProfileRuntimeFields trimmed() const;

    bool operator==(const VeranoxProfileRuntimeFields &) const = default;
};

// A profile as a person types it.
struct VeranoxProfileDraft {
    QUuid id = QUuid::createUuid(); // of this edit
    std::optional<QString> originalName; // of the profile being edited; absent for a new one
    QString name; // key in the configuration
    QString displayName;
    QString icon;
    QString color;
    QString backend; // "tsnet" or "tailscaled"
    QString suffixesText;
    QString ipRoutesText;
    bool matchRoot = false;
    bool acceptRoutes = false;
    QString hostname;
    VeranoxProfileRuntimeFields runtimeFields;

    // The draft of a new profile, to be filled in.
    static VeranoxProfileDraft empty(int nextIndex);

    VeranoxProfileDraft() = default;
    // The draft of the existing profile that is stored under `profileName`.
    VeranoxProfileDraft(const QString &profileName, const VeranoxEditableProfile &profile);

    // Whether no profile is replaced.
    bool isNew() const { return !originalName; }

    // Whether the name field shows no error; an empty field shows none.
    bool isValidName() const;

    // What to tell beneath a field whose text cannot be saved, if it cannot.
    std::optional<QString> nameWarning() const;
    std::optional<QString> hostnameWarning() const;

    // Whether there is a point in trying to save.
    bool isReadyToSave() const;

    // The profile to save, or the first problem. `existing` is the profile that this one replaces: what a person cannot
    // edit is kept from it, so that an edit never moves a profile's state, socket, proxies or port.
    VeranoxDraftResult<VeranoxEditableProfile> makeProfile(const std::optional<VeranoxEditableProfile> &existing) const;

    // 1 to 63 lower-case letters, digits, hyphens and underscores, beginning with a letter or digit.
    static bool isValidProfileName(const QString &text);

    // Nothing, or up to 63 letters, digits and inner hyphens.
    static bool isValidHostname(const QString &text);

    // The entries between commas, line feeds, blanks and tabs.
    static QStringList splitList(const QString &text);

    bool operator==(const VeranoxProfileDraft &) const = default;
};

// Whether there is something to save: false while no document is loaded, true for a new or renamed profile and for a
// draft that cannot be saved as it is.
bool profileDraftHasChanges(const VeranoxProfileDraft &draft, const std::optional<VeranoxEditableConfig> &document);

Q_DECLARE_METATYPE(VeranoxProfileRuntimeFields)
Q_DECLARE_METATYPE(VeranoxProfileDraft)
