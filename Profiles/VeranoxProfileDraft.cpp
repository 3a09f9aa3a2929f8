#include "Profiles/VeranoxProfileDraft.h"
#include "API/Values/VeranoxProfileAppearance.h"
#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype longestName = 63; // of a DNS label, which both names become

bool isLowerCaseLetterOrDigit(QChar character)
{
    return (character >= u'a' && character <= u'z') || (character >= u'0' && character <= u'9');
}

bool isProfileNameCharacter(QChar character)
{
    return isLowerCaseLetterOrDigit(character) || character == u'_' || character == u'-';
}

bool isHostnameCharacter(QChar character)
{
    return isLowerCaseLetterOrDigit(character) || (character >= u'A' && character <= u'Z') || character == u'-';
}

bool isListSeparator(QChar character)
{
    return character == u',' || character == u'\n' || character == u' ' || character == u'\t';
}

bool isKnownBackend(const QString &backend)
{
    return backend == "tsnet"_L1 || backend == "tailscaled"_L1;
}

bool isMalformedSuffix(const QString &suffix)
{
    return suffix.contains(u'/') || std::ranges::any_of(suffix, [](QChar character) { return character.isSpace(); });
}

QString malformedNameSentence()
{
    return u"Profile name must be lowercase letters, numbers, hyphen, or underscore, start with a letter or number, "
           "and be at most 63 characters."_s;
}

QString malformedHostnameSentence()
{
    return u"Router hostname must be at most 63 letters, numbers, or hyphens, and cannot start or end with a "
           "hyphen."_s;
}

// The first problem of a draft, as a sentence.
std::optional<QString> problem(const VeranoxProfileDraft &draft, const QStringList &suffixes)
{
    const QString name = draft.name.trimmed();
    if (name.isEmpty())
        return u"Profile name is required."_s;
    if (!VeranoxProfileDraft::isValidProfileName(name))
        return malformedNameSentence();
    if (suffixes.isEmpty())
        return u"At least one .ts.net suffix is required."_s;
    if (const auto malformed = std::ranges::find_if(suffixes, isMalformedSuffix); malformed != suffixes.end())
        return u"Suffix \""_s + *malformed + u"\" cannot contain spaces or a slash."_s;
    if (!isKnownBackend(draft.backend))
        return u"Backend must be tsnet or tailscaled."_s;
    if (!VeranoxProfileDraft::isValidHostname(draft.hostname.trimmed()))
        return malformedHostnameSentence();
    return std::nullopt;
}

VeranoxEditableProfile withRuntimeFields(const VeranoxProfileRuntimeFields &fields)
{
    return {.stateDir = fields.stateDir,
        .socket = fields.socket,
        .httpProxy = fields.httpProxy,
        .socks5Proxy = fields.socks5Proxy,
        .port = fields.port};
}

} // namespace

VeranoxProfileRuntimeFields VeranoxProfileRuntimeFields::trimmed() const
{
    return {stateDir.trimmed(), socket.trimmed(), httpProxy.trimmed(), socks5Proxy.trimmed(), port};
}

VeranoxProfileDraft VeranoxProfileDraft::empty(int nextIndex)
{
    VeranoxProfileDraft draft;
    draft.name = u"tailnet"_s + QString::number(nextIndex);
    draft.displayName = u"Tailnet "_s + QString::number(nextIndex);
    draft.icon = u"network"_s;
    draft.color = u"green"_s;
    draft.backend = u"tsnet"_s;
    draft.suffixesText = u".example.ts.net"_s;
    draft.matchRoot = true;
    return draft;
}

VeranoxProfileDraft::VeranoxProfileDraft(const QString &profileName, const VeranoxEditableProfile &profile)
    : originalName(profileName),
      name(profileName),
      displayName(profile.displayName),
      icon(VeranoxProfileAppearance::knownIcon(profile.icon, profile.displayName)),
      color(VeranoxProfileAppearance::knownColor(profile.color, profile.displayName)),
      backend(profile.backend.isEmpty() ? u"tsnet"_s : profile.backend),
      suffixesText(profile.suffixes.join(", "_L1)),
      ipRoutesText(profile.ipRoutes.join(", "_L1)),
      matchRoot(profile.matchRoot),
      acceptRoutes(profile.acceptRoutes),
      hostname(profile.hostname),
      runtimeFields{profile.stateDir, profile.socket, profile.httpProxy, profile.socks5Proxy, profile.port}
{
}

bool VeranoxProfileDraft::isValidName() const
{
    const QString trimmed = name.trimmed();
    return trimmed.isEmpty() || isValidProfileName(trimmed);
}

std::optional<QString> VeranoxProfileDraft::nameWarning() const
{
    return isValidName() ? std::nullopt : std::optional(malformedNameSentence());
}

std::optional<QString> VeranoxProfileDraft::hostnameWarning() const
{
    return isValidHostname(hostname.trimmed()) ? std::nullopt : std::optional(malformedHostnameSentence());
}

bool VeranoxProfileDraft::isReadyToSave() const
{
    return isValidProfileName(name.trimmed()) && !splitList(suffixesText).isEmpty() && isKnownBackend(backend)
        && isValidHostname(hostname.trimmed());
}

VeranoxDraftResult<VeranoxEditableProfile> VeranoxProfileDraft::makeProfile(
    const std::optional<VeranoxEditableProfile> &existing) const
{
    const QStringList suffixes = splitList(suffixesText);
    if (const auto sentence = problem(*this, suffixes))
        return draftError(*sentence);

    VeranoxEditableProfile profile = existing ? *existing : withRuntimeFields(runtimeFields.trimmed());
    const QString title = displayName.trimmed();
    profile.displayName = title.isEmpty() ? name.trimmed() : title;
    profile.icon = VeranoxProfileAppearance::knownIcon(icon, profile.displayName);
    profile.color = VeranoxProfileAppearance::knownColor(color, profile.displayName);
    profile.backend = backend;
    profile.hostname = hostname.trimmed();
    profile.suffixes = suffixes;
    profile.ipRoutes = splitList(ipRoutesText);
    profile.matchRoot = matchRoot;
    profile.acceptRoutes = acceptRoutes;
    return profile;
}

bool VeranoxProfileDraft::isValidProfileName(const QString &text)
{
    return !text.isEmpty() && text.size() <= longestName && std::ranges::all_of(text, isProfileNameCharacter)
        && isLowerCaseLetterOrDigit(text.front());
}

bool VeranoxProfileDraft::isValidHostname(const QString &text)
{
    return text.size() <= longestName && !text.startsWith(u'-') && !text.endsWith(u'-')
        && std::ranges::all_of(text, isHostnameCharacter);
}

QStringList VeranoxProfileDraft::splitList(const QString &text)
{
    QStringList entries;
    auto begin = text.begin();
    while (begin != text.end()) {
        const auto end = std::find_if(begin, text.end(), isListSeparator);
        if (const QString entry = QStringView(begin, end).trimmed().toString(); !entry.isEmpty())
            entries.append(entry);
        begin = std::find_if_not(end, text.end(), isListSeparator);
    }
    return entries;
}

bool profileDraftHasChanges(const VeranoxProfileDraft &draft, const std::optional<VeranoxEditableConfig> &document)
{
    if (!document)
        return false;
    const auto entry = draft.originalName ? document->profiles.find(*draft.originalName) : document->profiles.end();
    if (entry == document->profiles.end() || draft.name.trimmed() != *draft.originalName)
        return true;
    return draft.makeProfile(*entry) != *entry;
}
