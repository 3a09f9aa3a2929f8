#include "Tunnels/VeranoxTunnelDraft.h"
#include "API/Values/VeranoxLoopback.h"
#include "Profiles/VeranoxDraftText.h"
#include "Profiles/VeranoxProfileDraft.h"
#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

using Auth = VeranoxTunnelSSHAuth;

bool isBlank(const QString &text)
{
    return text.trimmed().isEmpty();
}

bool isHostAndPort(const QString &target)
{
    return VeranoxLoopback::endpoint(target.trimmed(), u"Target"_s).has_value();
}

std::optional<QString> nameProblem(const VeranoxTunnelDraft &draft)
{
    const QString name = draft.normalName();
    if (name.isEmpty())
        return u"Tunnel name is required."_s;
    if (!VeranoxProfileDraft::isValidProfileName(name))
        return u"Tunnel name must be lowercase letters, numbers, hyphen, or underscore, and be at most 63 characters."_s;
    return std::nullopt;
}

std::optional<QString> keyProblem(const QString &path)
{
    if (path.isEmpty())
        return u"Choose a private key, or switch to SSH agent or password."_s;
    if (!path.startsWith(u'/'))
        return u"The private key must be an absolute path."_s;
    return std::nullopt;
}

std::optional<QString> sshProblem(const VeranoxTunnelDraft &draft)
{
    if (isBlank(draft.bastion) || isBlank(draft.sshUser))
        return u"SSH tunnels need a bastion host and an SSH user."_s;
    if (draft.sshAuth == Auth::key)
        return keyProblem(draft.identityFile.trimmed());
    if (draft.needsPassword())
        return u"Enter the SSH password."_s;
    return std::nullopt;
}

// The first problem of everything but the local endpoint, as a sentence.
std::optional<QString> problem(const VeranoxTunnelDraft &draft)
{
    if (auto sentence = nameProblem(draft))
        return sentence;
    if (draft.profile.isEmpty())
        return u"A profile is required."_s;
    if (!isHostAndPort(draft.target))
        return u"Target must be host:port (for example db.internal.example:5432)."_s;
    return draft.useSSH ? sshProblem(draft) : std::nullopt;
}

VeranoxDraftResult<QString> localEndpoint(const QString &typed)
{
    return isBlank(typed) ? QString() : VeranoxLoopback::normalizedAddress(typed, u"Local endpoint"_s);
}

VeranoxEditableTunnelSSH sshGroup(const VeranoxTunnelDraft &draft)
{
    return {.bastion = draft.bastion.trimmed(),
        .user = draft.sshUser.trimmed(),
        .auth = rawValue(draft.sshAuth),
        .identityFile = draft.sshAuth == Auth::key ? draft.identityFile.trimmed() : QString()};
}

} // namespace

VeranoxTunnelDraft::VeranoxTunnelDraft(const VeranoxTunnel &tunnel, bool isPasswordStored)
    : originalName(tunnel.name),
      name(tunnel.name),
      displayName(VeranoxDraftText::typedLabel(tunnel.displayName, tunnel.name)),
      profile(tunnel.profile),
      target(tunnel.target),
      useSSH(tunnel.mode == "ssh"_L1),
      bastion(tunnel.sshBastion),
      sshUser(tunnel.sshUser),
      sshAuth(tunnelSSHAuth(tunnel.sshAuth)),
      identityFile(tunnel.sshIdentity),
      hasStoredPassword(asksForStoredPassword(tunnel) && isPasswordStored),
      listen(tunnel.listen),
      disabled(tunnel.disabled)
{
}

bool VeranoxTunnelDraft::asksForStoredPassword(const VeranoxTunnel &tunnel)
{
    return tunnel.mode == "ssh"_L1 && tunnel.sshAuth == "password"_L1;
}

QString VeranoxTunnelDraft::normalName() const
{
    return VeranoxDraftText::normalName(name);
}

bool VeranoxTunnelDraft::isValidName() const
{
    const QString normal = normalName();
    return normal.isEmpty() || VeranoxProfileDraft::isValidProfileName(normal);
}

bool VeranoxTunnelDraft::isValidTarget() const
{
    return isBlank(target) || isHostAndPort(target);
}

bool VeranoxTunnelDraft::needsPassword() const
{
    return useSSH && sshAuth == Auth::password && isBlank(password) && !hasStoredPassword;
}

bool VeranoxTunnelDraft::isReadyToSave() const
{
    if (nameProblem(*this) || profile.isEmpty() || !isHostAndPort(target))
        return false;
    if (!useSSH)
        return true;
    const bool hasKeyIfAsked = sshAuth != Auth::key || !isBlank(identityFile);
    return !isBlank(bastion) && !isBlank(sshUser) && hasKeyIfAsked && !needsPassword();
}

std::optional<QString> VeranoxTunnelDraft::nameConflict(const QList<VeranoxTunnel> &existing) const
{
    const QString normal = normalName();
    if (normal.isEmpty() || originalName == normal)
        return std::nullopt;
    if (std::ranges::find(existing, normal, &VeranoxTunnel::name) == existing.end())
        return std::nullopt;
    return u"A tunnel named \""_s + normal + u"\" already exists."_s;
}

VeranoxDraftResult<VeranoxEditableTunnel> VeranoxTunnelDraft::makeTunnel() const
{
    if (const auto sentence = problem(*this))
        return draftError(*sentence);
    const auto address = localEndpoint(listen);
    if (!address)
        return std::unexpected(address.error());
    return VeranoxEditableTunnel{.displayName = displayName.trimmed(),
        .profile = profile,
        .mode = useSSH ? u"ssh"_s : u"native"_s,
        .listen = *address,
        .target = target.trimmed(),
        .ssh = useSSH ? std::optional(sshGroup(*this)) : std::nullopt,
        .disabled = disabled};
}
