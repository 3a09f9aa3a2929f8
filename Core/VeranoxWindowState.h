#pragma once
#include "API/Records/VeranoxPathReport.h"
#include "Core/VeranoxSettingsSelection.h"
#include "State/VeranoxState.h"

// What the settings window shows and is asked for that belongs to no subject of its own. Main thread only; the state
// outlives it, and tells of these changes with its own.
class VeranoxWindowState final : public QObject {
    Q_OBJECT

public:
    explicit VeranoxWindowState(VeranoxState &state) : m_state(state) { }

    bool isDiagnosing() const { return m_isDiagnosing.value(); }
    const std::optional<VeranoxPathReport> &pathReport() const { return m_pathReport.value(); }
    const QString &diagnosticTarget() const { return m_diagnosticTarget.value(); }
    const std::optional<VeranoxSettingsSelection> &requestedSection() const { return m_requestedSection.value(); }

    void setDiagnosticTarget(QString target) { m_diagnosticTarget = std::move(target); }
    void setRequestedSection(std::optional<VeranoxSettingsSelection> section)
    {
        m_requestedSection = std::move(section);
    }

private:
    void announceChange() { m_state.announceChange(); }

    VeranoxState &m_state;
    Q_OBJECT_BINDABLE_PROPERTY_WITH_ARGS(
        VeranoxWindowState, bool, m_isDiagnosing, false, &VeranoxWindowState::announceChange)
    Q_OBJECT_BINDABLE_PROPERTY(
        VeranoxWindowState, std::optional<VeranoxPathReport>, m_pathReport, &VeranoxWindowState::announceChange)
    Q_OBJECT_BINDABLE_PROPERTY(VeranoxWindowState, QString, m_diagnosticTarget, &VeranoxWindowState::announceChange)
    Q_OBJECT_BINDABLE_PROPERTY(VeranoxWindowState, std::optional<VeranoxSettingsSelection>, m_requestedSection,
        &VeranoxWindowState::announceChange)
};
