#pragma once
#include <QMetaType>
#include <QString>
#include <QUrl>
#include <optional>

// How a login or logout of a profile went.
struct VeranoxProfileAction {
    QString profile;
    QString action; // the action performed
    bool ok = false;
    QString output; // captured text of the action
    QString error;
    QString structuredAuthURL; // where to sign in, when the service could tell it from the output

    // Where the user signs in: the structured address, otherwise the first https address in output and error. Only
    // https with a host, so that what a service answers opens nothing else.
    std::optional<QUrl> authURL() const;

    bool operator==(const VeranoxProfileAction &) const = default;
};

// The address if the text is one of scheme https with a host; its domain is not looked at.
std::optional<QUrl> validatedHTTPSURL(const QString &text);

Q_DECLARE_METATYPE(VeranoxProfileAction)
