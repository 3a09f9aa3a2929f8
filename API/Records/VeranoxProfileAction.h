#pragma once
#include <QMetaType>
#include <QString>
#include <QUrl>
#include <optional>

// How a login or logout of a profile went.
struct VeranoxProfileAction {
    Q_GADGET
    Q_PROPERTY(QString profile MEMBER profile)
    Q_PROPERTY(QString action MEMBER action)
    Q_PROPERTY(bool ok MEMBER ok)
    Q_PROPERTY(QString output MEMBER output)
    Q_PROPERTY(QString error MEMBER error)
    Q_PROPERTY(QUrl authURL READ authURLOrEmpty)

public:
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

private:
    QUrl authURLOrEmpty() const { return authURL().value_or(QUrl()); }
};

// The address if the text is one of scheme https with a host; its domain is not looked at.
std::optional<QUrl> validatedHTTPSURL(const QString &text);

Q_DECLARE_METATYPE(VeranoxProfileAction)
