#include "API/Records/VeranoxProfileAction.h"
#include "Base/Json/Codec.h"
#include <QRegularExpression>

using namespace Qt::StringLiterals;

template <> struct json::Layout<VeranoxProfileAction> {
    using Action = VeranoxProfileAction;
    static constexpr std::tuple fields{
        field("profile", &Action::profile, ""),
        field("action", &Action::action, ""),
        field("ok", &Action::ok, false),
        field("output", &Action::output, ""),
        field("error", &Action::error, ""),
        field("auth_url", &Action::structuredAuthURL, ""),
    };
};

namespace {

// Punctuation of the sentence round an address.
QString withoutPunctuation(QStringView text)
{
    constexpr QStringView punctuation = u".,;:)]}>";
    while (!text.isEmpty() && punctuation.contains(text.front()))
        text = text.sliced(1);
    while (!text.isEmpty() && punctuation.contains(text.back()))
        text.chop(1);
    return text.toString();
}

std::optional<QUrl> firstAddressIn(const QString &text)
{
    static const QRegularExpression address(uR"(https://[^\s"']+)"_s, QRegularExpression::UseUnicodePropertiesOption);
    const auto match = address.match(text);
    return match.hasMatch() ? validatedHTTPSURL(withoutPunctuation(match.capturedView())) : std::nullopt;
}

} // namespace

std::optional<QUrl> validatedHTTPSURL(const QString &text)
{
    QUrl url(text, QUrl::StrictMode);
    if (!url.isValid() || url.scheme().toLower() != "https"_L1 || url.host().isEmpty())
        return std::nullopt;
    return url;
}

std::optional<QUrl> VeranoxProfileAction::authURL() const
{
    const QString structured = structuredAuthURL.trimmed();
    if (!structured.isEmpty()) {
        if (auto url = validatedHTTPSURL(structured))
            return url;
    }
    return firstAddressIn(output + u'\n' + error);
}

template VeranoxProfileAction decodeRecord(const QByteArray &);
