#include "API/Values/VeranoxLoopback.h"
#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace {

constexpr std::array loopbackHosts{"127.0.0.1"_L1, "localhost"_L1, "::1"_L1};
constexpr std::array schemes{"http"_L1, "https"_L1};
constexpr int highestPort = 65535;

bool isLoopback(const QString &lowerCaseHost)
{
    return std::ranges::find(loopbackHosts, lowerCaseHost) != loopbackHosts.end();
}

bool isASCIIDigit(QChar character)
{
    return character >= u'0' && character <= u'9';
}

struct SplitEndpoint {
    QString host;
    QString port;
};

std::optional<SplitEndpoint> splitBracketed(const QString &text)
{
    const auto closing = text.indexOf(u']');
    if (closing < 0 || closing + 1 >= text.size() || text.at(closing + 1) != u':')
        return std::nullopt;
    return SplitEndpoint{text.sliced(1, closing - 1), text.sliced(closing + 2)};
}

std::optional<SplitEndpoint> splitPlain(const QString &text)
{
    const auto colon = text.lastIndexOf(u':');
    if (colon < 0)
        return std::nullopt;
    return SplitEndpoint{text.first(colon), text.sliced(colon + 1)};
}

// The host as it stands in the text: a parser of addresses takes many other spellings for the same one.
QString typedHost(const QString &address)
{
    constexpr QStringView authorityMark = u"://";
    const auto mark = address.indexOf(authorityMark);
    QStringView authority = QStringView(address).sliced(mark < 0 ? address.size() : mark + authorityMark.size());
    const auto end = std::ranges::find_if(authority, [](QChar c) { return c == u'/' || c == u'?' || c == u'#'; });
    authority = QStringView(authority.begin(), end);
    const QStringView endpoint = authority.sliced(authority.lastIndexOf(u'@') + 1);
    const bool isBracketed = endpoint.startsWith(u'[');
    const auto hostEnd = endpoint.indexOf(isBracketed ? u']' : u':');
    const QStringView host = hostEnd < 0 ? endpoint : endpoint.first(hostEnd);
    return host.sliced(isBracketed ? 1 : 0).toString();
}

} // namespace

namespace VeranoxLoopback {

std::optional<qint64> decimalInteger(QStringView text)
{
    const bool hasSign = text.startsWith(u'+') || text.startsWith(u'-');
    const QStringView digits = text.sliced(hasSign ? 1 : 0);
    if (digits.isEmpty() || !std::ranges::all_of(digits, isASCIIDigit))
        return std::nullopt;
    bool fits = false;
    const qint64 number = text.toLongLong(&fits);
    return fits ? std::optional(number) : std::nullopt;
}

VeranoxDraftResult<int> port(const QString &text, const QString &label, bool allowsZero)
{
    const auto number = decimalInteger(text);
    if (!number)
        return draftError(label + u" must be a number."_s);
    const int lowestPort = allowsZero ? 0 : 1;
    if (*number < lowestPort || *number > highestPort)
        return draftError(label + u" must be between "_s + QString::number(lowestPort) + u" and 65535."_s);
    return static_cast<int>(*number);
}

VeranoxDraftResult<Endpoint> endpoint(const QString &text, const QString &label)
{
    const bool isBracketed = text.startsWith(u'[');
    const auto split = isBracketed ? splitBracketed(text) : splitPlain(text);
    if (!split)
        return draftError(label + u" must use host:port."_s);
    if (!isBracketed && split->host.isEmpty())
        return draftError(label + u" host is required."_s);
    const auto number = port(split->port, label, false);
    if (!number)
        return std::unexpected(number.error());
    return Endpoint{split->host, *number};
}

VeranoxDraftResult<QString> normalizedAddress(const QString &text, const QString &label)
{
    const auto typed = endpoint(text.trimmed(), label);
    if (!typed)
        return std::unexpected(typed.error());
    const QString host = typed->host.toLower();
    if (!isLoopback(host))
        return draftError(label + u" must be bound to loopback."_s);
    const QString shownHost = host == "::1"_L1 ? u"[::1]"_s : host;
    return shownHost + u':' + QString::number(typed->port);
}

VeranoxDraftResult<QUrl> validatedURL(const QString &text, const QString &label)
{
    const QString address = text.trimmed();
    QUrl url(address, QUrl::StrictMode);
    if (!url.isValid())
        return draftError(label + u" is not a valid URL."_s);
    if (std::ranges::find(schemes, url.scheme().toLower()) == schemes.end())
        return draftError(label + u" must use an http or https URL."_s);
    const QString host = url.host().toLower();
    if (!isLoopback(host) || typedHost(address).toLower() != host)
        return draftError(label + u" must point at a loopback host."_s);
    return url;
}

} // namespace VeranoxLoopback
