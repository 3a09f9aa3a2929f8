// Drafts of publications that can be saved as they are, for a test to change.
#pragma once
#include "Publications/VeranoxPublicationDraft.h"

namespace publication_drafts {

using Draft = VeranoxPublicationDraft;
using Reach = VeranoxPublicationReach;

inline Draft fullDraft()
{
    Draft draft;
    draft.name = QStringLiteral("web");
    draft.profile = QStringLiteral("acme");
    draft.target = QStringLiteral("127.0.0.1:8080");
    draft.port = QStringLiteral("443");
    return draft;
}

inline Draft with(QString Draft::*field, const QString &text, Draft draft = fullDraft())
{
    draft.*field = text;
    return draft;
}

} // namespace publication_drafts
