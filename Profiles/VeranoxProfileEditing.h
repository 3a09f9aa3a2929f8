#pragma once
#include "Profiles/VeranoxLoginPrompt.h"
#include "Profiles/VeranoxProfileDraft.h"
#include "Profiles/VeranoxProfileTestFeedback.h"
#include "Profiles/VeranoxRouterRestartPrompt.h"
#include "Profiles/VeranoxRouterSettingsDraft.h"
#include "State/VeranoxState.h"

// What a person is editing in profiles and in the router's settings, and what they are asked or told meanwhile. Main
// thread only; the state outlives it. Its getters can be followed like the state's, which tells of these changes with
// its own.
class VeranoxProfileEditing final : public QObject {
    Q_OBJECT

public:
    explicit VeranoxProfileEditing(VeranoxState &state);
    ~VeranoxProfileEditing() override;

    const VeranoxProfileDraft &profileDraft() const { return m_profileDraft.value(); }
    const VeranoxRouterSettingsDraft &routerDraft() const { return m_routerDraft.value(); }
    bool isCreatingProfile() const { return m_isCreatingProfile.value(); }
    const std::optional<QString> &testingProfileName() const { return m_testingProfileName.value(); }
    const std::optional<VeranoxProfileTestFeedback> &profileTestFeedback() const
    {
        return m_profileTestFeedback.value();
    }
    const std::optional<VeranoxLoginPrompt> &loginPrompt() const { return m_loginPrompt.value(); }
    const std::optional<VeranoxRouterRestartPrompt> &routerRestartPrompt() const
    {
        return m_routerRestartPrompt.value();
    }

    void setProfileDraft(VeranoxProfileDraft draft) { m_profileDraft = std::move(draft); }
    void setRouterDraft(VeranoxRouterSettingsDraft draft) { m_routerDraft = std::move(draft); }
    void closeRouterRestartPrompt() { m_routerRestartPrompt = std::optional<VeranoxRouterRestartPrompt>(); }

    // Whether there is something to save; false before a document is there.
    bool routerDraftHasChanges() const;
    bool profileDraftHasChanges() const;

private:
    void announceChange() { m_state.announceChange(); }

    VeranoxState &m_state;
    Q_OBJECT_BINDABLE_PROPERTY_WITH_ARGS(VeranoxProfileEditing, VeranoxProfileDraft, m_profileDraft,
        VeranoxProfileDraft::empty(1), &VeranoxProfileEditing::announceChange)
    Q_OBJECT_BINDABLE_PROPERTY_WITH_ARGS(VeranoxProfileEditing, VeranoxRouterSettingsDraft, m_routerDraft,
        VeranoxRouterSettingsDraft(VeranoxEditableRouterConfig::defaults()), &VeranoxProfileEditing::announceChange)
    Q_OBJECT_BINDABLE_PROPERTY_WITH_ARGS(
        VeranoxProfileEditing, bool, m_isCreatingProfile, false, &VeranoxProfileEditing::announceChange)
    Q_OBJECT_BINDABLE_PROPERTY(
        VeranoxProfileEditing, std::optional<QString>, m_testingProfileName, &VeranoxProfileEditing::announceChange)
    Q_OBJECT_BINDABLE_PROPERTY(VeranoxProfileEditing, std::optional<VeranoxProfileTestFeedback>, m_profileTestFeedback,
        &VeranoxProfileEditing::announceChange)
    Q_OBJECT_BINDABLE_PROPERTY(
        VeranoxProfileEditing, std::optional<VeranoxLoginPrompt>, m_loginPrompt, &VeranoxProfileEditing::announceChange)
    Q_OBJECT_BINDABLE_PROPERTY(VeranoxProfileEditing, std::optional<VeranoxRouterRestartPrompt>, m_routerRestartPrompt,
        &VeranoxProfileEditing::announceChange)
};
