#include "Profiles/VeranoxProfileEditing.h"

VeranoxProfileEditing::VeranoxProfileEditing(VeranoxState &state) : m_state(state) { }

VeranoxProfileEditing::~VeranoxProfileEditing() = default;

bool VeranoxProfileEditing::routerDraftHasChanges() const
{
    return ::routerDraftHasChanges(routerDraft(), m_state.editableConfig());
}

bool VeranoxProfileEditing::profileDraftHasChanges() const
{
    return ::profileDraftHasChanges(profileDraft(), m_state.editableConfig());
}
