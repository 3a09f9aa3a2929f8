// Drafts of tunnels that can be saved as they are, for a test to change.
#pragma once
#include "Tunnels/VeranoxTunnelDraft.h"

namespace tunnel_drafts {

using Draft = VeranoxTunnelDraft;
using Auth = VeranoxTunnelSSHAuth;

inline Draft nativeDraft()
{
    Draft draft;
    draft.name = QStringLiteral("db");
    draft.profile = QStringLiteral("acme");
    draft.target = QStringLiteral("db.internal.example:5432");
    return draft;
}

inline Draft draftNamed(const QString &name)
{
    Draft draft;
    draft.name = name;
    draft.profile = QStringLiteral("home");
    draft.target = QStringLiteral("db:5432");
    return draft;
}

inline Draft sshDraft(Auth auth)
{
    Draft draft = nativeDraft();
    draft.useSSH = true;
    draft.bastion = QStringLiteral("bastion");
    draft.sshUser = QStringLiteral("me");
    draft.sshAuth = auth;
    return draft;
}

inline Draft with(QString Draft::*field, const QString &text, Draft draft = nativeDraft())
{
    draft.*field = text;
    return draft;
}

} // namespace tunnel_drafts
