#include "Publications/VeranoxPublicationDraft.h"
#include "API/Values/VeranoxLoopback.h"
#include "Profiles/VeranoxDraftText.h"
#include "Profiles/VeranoxProfileDraft.h"
#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

bool isBlank(const QString &text)
{
    return text.trimmed().isEmpty();
}

VeranoxDraftResult<int> portFrom(const QString &typed, const QString &label)
{
    return VeranoxLoopback::port(typed.trimmed(), label, false);
}

bool isLoopbackAddress(const QString &target)
{
    return VeranoxLoopback::normalizedAddress(target, u"Target"_s).has_value();
}

bool isPort(const QString &typed)
{
    return portFrom(typed, u"Port"_s).has_value();
}

// The first problem of what does not stand in the record, and of the profile, as a sentence.
std::optional<QString> problem(const VeranoxPublicationDraft &draft)
{
    const QString name = draft.normalName();
    if (name.isEmpty())
        return u"Publication name is required."_s;
    if (!VeranoxProfileDraft::isValidProfileName(name))
        return u"Publication name must be lowercase letters, numbers, hyphen, or underscore, and be at most 63 "
               "characters."_s;
    if (draft.profile.isEmpty())
        return u"A profile is required."_s;
    return std::nullopt;
}

VeranoxDraftResult<QString> requiredTarget(const QString &typed)
{
    if (isBlank(typed))
        return draftError(u"Target is required — the local service to publish, as host:port."_s);
    return VeranoxLoopback::normalizedAddress(typed, u"Target"_s);
}

VeranoxDraftResult<int> requiredPort(const QString &typed)
{
    if (isBlank(typed))
        return draftError(u"Tailnet port is required — Veranox does not pick one for you."_s);
    return portFrom(typed, u"Tailnet port"_s);
}

} // namespace

VeranoxPublicationDraft::VeranoxPublicationDraft(const VeranoxPublication &publication)
    : originalName(publication.name),
      name(publication.name),
      displayName(VeranoxDraftText::typedLabel(publication.displayName, publication.name)),
      profile(publication.profile),
      target(publication.target),
      port(publication.port >= 1 ? QString::number(publication.port) : QString()),
      tls(publication.tls),
      reach(publicationReach(publication.reach)),
      disabled(publication.disabled)
{
}

QString VeranoxPublicationDraft::normalName() const
{
    return VeranoxDraftText::normalName(name);
}

bool VeranoxPublicationDraft::isValidName() const
{
    const QString normal = normalName();
    return normal.isEmpty() || VeranoxProfileDraft::isValidProfileName(normal);
}

bool VeranoxPublicationDraft::isValidTarget() const
{
    return isBlank(target) || isLoopbackAddress(target);
}

bool VeranoxPublicationDraft::isValidPort() const
{
    return isBlank(port) || isPort(port);
}

bool VeranoxPublicationDraft::isReadyToSave() const
{
    return VeranoxProfileDraft::isValidProfileName(normalName()) && !profile.isEmpty() && isLoopbackAddress(target)
        && isPort(port);
}

std::optional<QString> VeranoxPublicationDraft::nameConflict(const QList<VeranoxPublication> &existing) const
{
    const QString normal = normalName();
    if (normal.isEmpty() || originalName == normal)
        return std::nullopt;
    if (std::ranges::find(existing, normal, &VeranoxPublication::name) == existing.end())
        return std::nullopt;
    return u"A publication named \""_s + normal + u"\" already exists."_s;
}

std::optional<QString> VeranoxPublicationDraft::portConflict(const QList<VeranoxPublication> &existing) const
{
    const auto number = VeranoxLoopback::decimalInteger(port.trimmed());
    if (!number || profile.isEmpty())
        return std::nullopt;
    const auto other = std::ranges::find_if(existing, [&](const VeranoxPublication &publication) {
        return originalName != publication.name && publication.profile == profile && publication.port == *number;
    });
    if (other == existing.end())
        return std::nullopt;
    return u"Publication \""_s + other->name + u"\" already uses port "_s + QString::number(*number)
        + u" on profile \""_s + profile + u"\"."_s;
}

std::optional<QString> VeranoxPublicationDraft::profileProblem(const QList<VeranoxProfile> &profiles) const
{
    if (profile.isEmpty())
        return std::nullopt;
    const auto owner = std::ranges::find(profiles, profile, &VeranoxProfile::name);
    if (owner == profiles.end())
        return u"That profile is no longer in the configuration. Choose an existing profile."_s;
    if (owner->backend == "tsnet"_L1)
        return std::nullopt;
    return u"Profile "_s + owner->displayName + u" runs on the "_s + owner->backend
        + u" backend. Publications need backend: tsnet — set it on that profile first. Switching backends means "
          "signing that profile in again, because the two backends do not share state."_s;
}

bool VeranoxPublicationDraft::hasSameContent(const VeranoxPublicationDraft &other) const
{
    return name.trimmed() == other.name.trimmed() && profile == other.profile
        && target.trimmed() == other.target.trimmed() && port.trimmed() == other.port.trimmed() && tls == other.tls
        && reach == other.reach;
}

VeranoxDraftResult<VeranoxEditablePublication> VeranoxPublicationDraft::makePublication() const
{
    if (const auto sentence = problem(*this))
        return draftError(*sentence);
    const auto address = requiredTarget(target);
    if (!address)
        return std::unexpected(address.error());
    const auto number = requiredPort(port);
    if (!number)
        return std::unexpected(number.error());
    return VeranoxEditablePublication{.displayName = displayName.trimmed(),
        .profile = profile,
        .target = *address,
        .reach = rawValue(reach),
        .port = *number,
        .tls = tls,
        .disabled = disabled};
}
