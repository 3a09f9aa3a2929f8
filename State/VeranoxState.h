#pragma once
#include "API/Records/VeranoxConfig.h"
#include "API/Records/VeranoxEditableConfig.h"
#include "API/Records/VeranoxEnvironment.h"
#include "State/VeranoxActionOutcome.h"
#include "State/VeranoxNotificationSnapshot.h"
#include <QObject>
#include <QProperty>
#include <memory>
#include <optional>

// The observable values that several subjects share. Main thread only.
//
// Each value is a bindable property behind a plain getter. Whoever wants to follow one reads its getter inside of a
// binding (QProperty::setBinding(), or Watches): what the binding has read, it follows, also through functions that
// read getters in turn, and so derived values need nothing of their own. No connection is written by hand. A write that
// changes nothing tells nobody; changed() tells of any change, once per turn of the event loop.
//
// The failure observer is told right after each write of a value that failures show in.
class VeranoxState final : public QObject {
    Q_OBJECT

public:
    struct Generations { // each counts the lists that mutations have brought: a refresh must not undo them
        int tunnels = 0;
        int publications = 0;
    };

    explicit VeranoxState(std::unique_ptr<VeranoxFailureObserving> observer = {}); // absent: nobody is told
    ~VeranoxState() override;

    // ---- The service, as it was last heard of
    const ServiceState &serviceState() const { return m_serviceState.value(); }
    const QList<VeranoxProfile> &profiles() const { return m_profiles.value(); }
    const QList<VeranoxTunnel> &tunnels() const { return m_tunnels.value(); }
    const QList<VeranoxPublication> &publications() const { return m_publications.value(); }
    const VeranoxConfig &config() const { return m_config.value(); }
    const std::optional<VeranoxEditableConfig> &editableConfig() const { return m_editableConfig.value(); }
    const VeranoxEnvironment &environment() const { return m_environment.value(); }

    void setServiceState(ServiceState state);
    void setProfiles(QList<VeranoxProfile> profiles);
    void setTunnels(QList<VeranoxTunnel> tunnels);
    void setPublications(QList<VeranoxPublication> publications);
    void setConfig(VeranoxConfig config) { m_config = std::move(config); }
    void setEditableConfig(VeranoxEditableConfig config) { m_editableConfig = std::optional(std::move(config)); }
    void setEnvironment(VeranoxEnvironment environment) { m_environment = std::move(environment); }

    // Takes the whole list that the service answered a mutation with. A refresh that is on its way drops its older one:
    // it compares the generations with those of its beginning.
    void adoptTunnels(QList<VeranoxTunnel> fresh);
    void adoptPublications(QList<VeranoxPublication> fresh);
    const Generations &generations() const { return m_generations; }

    // ---- What the application does
    bool isRefreshing() const { return m_isRefreshing.value(); }
    bool isSavingSettings() const { return m_isSavingSettings.value(); }
    bool isRestartingRouter() const { return m_isRestartingRouter.value(); }
    bool isQuitting() const { return m_isQuitting.value(); }
    bool routerNeedsRestart() const { return m_routerNeedsRestart.value(); }

    // Set by a VeranoxRaisedFlag for as long as it goes on.
    void setIsRefreshing(bool on) { m_isRefreshing = on; }
    void setIsSavingSettings(bool on);
    void setIsRestartingRouter(bool on);
    void setIsQuitting(); // never taken back
    void setRouterNeedsRestart(bool needs) { m_routerNeedsRestart = needs; }

    // ---- The last action of a person, as one line
    const QString &lastActionMessage() const { return m_lastActionMessage.value(); }

    // Says that something takes its time; its outcome follows.
    void announceAction(const QString &what) { m_lastActionMessage = what; }

    // The one place where outcomes become lastActionMessage. One that says nothing leaves what stands there; nor does a
    // cancelled one say anything.
    void conclude(const VeranoxActionOutcome &outcome);

    // ---- What others keep beside the state announces itself here, to be told of with the rest.
    void announceChange();

Q_SIGNALS:
    void changed(); // anything; at most once per turn of the event loop, after the writes

private:
    void observeFailureTransitions();

    Q_OBJECT_BINDABLE_PROPERTY(VeranoxState, ServiceState, m_serviceState, &VeranoxState::announceChange)
    Q_OBJECT_BINDABLE_PROPERTY(VeranoxState, QList<VeranoxProfile>, m_profiles, &VeranoxState::announceChange)
    Q_OBJECT_BINDABLE_PROPERTY(VeranoxState, QList<VeranoxTunnel>, m_tunnels, &VeranoxState::announceChange)
    Q_OBJECT_BINDABLE_PROPERTY(VeranoxState, QList<VeranoxPublication>, m_publications, &VeranoxState::announceChange)
    Q_OBJECT_BINDABLE_PROPERTY(VeranoxState, VeranoxConfig, m_config, &VeranoxState::announceChange)
    Q_OBJECT_BINDABLE_PROPERTY(
        VeranoxState, std::optional<VeranoxEditableConfig>, m_editableConfig, &VeranoxState::announceChange)
    Q_OBJECT_BINDABLE_PROPERTY(VeranoxState, VeranoxEnvironment, m_environment, &VeranoxState::announceChange)
    Q_OBJECT_BINDABLE_PROPERTY_WITH_ARGS(VeranoxState, bool, m_isRefreshing, false, &VeranoxState::announceChange)
    Q_OBJECT_BINDABLE_PROPERTY_WITH_ARGS(VeranoxState, bool, m_isSavingSettings, false, &VeranoxState::announceChange)
    Q_OBJECT_BINDABLE_PROPERTY_WITH_ARGS(VeranoxState, bool, m_isRestartingRouter, false, &VeranoxState::announceChange)
    Q_OBJECT_BINDABLE_PROPERTY_WITH_ARGS(VeranoxState, bool, m_isQuitting, false, &VeranoxState::announceChange)
    Q_OBJECT_BINDABLE_PROPERTY_WITH_ARGS(VeranoxState, bool, m_routerNeedsRestart, false, &VeranoxState::announceChange)
    Q_OBJECT_BINDABLE_PROPERTY(VeranoxState, QString, m_lastActionMessage, &VeranoxState::announceChange)

    std::unique_ptr<VeranoxFailureObserving> m_observer;
    Generations m_generations;
    bool m_changeAnnounced = false;
};
