#pragma once
#include "Base/Models/KeyedListModel.h"
#include "Base/Models/Watches.h"
#include "MenuBar/Popover/VeranoxActiveProfileRow.h"
#include "MenuBar/Popover/VeranoxActivePublicationsView.h"
#include "MenuBar/Popover/VeranoxActiveTunnelsView.h"
#include "MenuBar/Popover/VeranoxMenuFooter.h"
#include "MenuBar/Popover/VeranoxMenuHeader.h"
#include "MenuBar/Popover/VeranoxMenuPresentation.h"
#include "MenuBar/Popover/VeranoxServiceErrorBanner.h"
#include <QObject>

// What the popover shows and does, decided from the store; it keeps no state of its own but what a person has just done
// in it. Main thread only.
class VeranoxMenuView final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the status item")
    Q_PROPERTY(VeranoxMenuPresentation *presentation READ presentation CONSTANT)
    Q_PROPERTY(VeranoxMenuHeader *header READ header CONSTANT)
    Q_PROPERTY(VeranoxServiceErrorBanner *banner READ banner CONSTANT)
    Q_PROPERTY(VeranoxMenuFooter *footer READ footer CONSTANT)
    Q_PROPERTY(QAbstractItemModel *profiles READ profiles CONSTANT)
    Q_PROPERTY(VeranoxActiveRecordsView *tunnels READ tunnels CONSTANT)
    Q_PROPERTY(VeranoxActiveRecordsView *publications READ publications CONSTANT)
    Q_PROPERTY(QString tunnelFailure READ tunnelFailure NOTIFY changed)
    Q_PROPERTY(QString publicationFailure READ publicationFailure NOTIFY changed)
    Q_PROPERTY(bool hasProfiles READ hasProfiles NOTIFY changed)

public:
    // The store outlives the view.
    VeranoxMenuView(
        jobs::MainQueue &queue, VeranoxStore &store, const VeranoxMenuActions &actions, QObject *parent = nullptr);
    ~VeranoxMenuView() override;

    VeranoxMenuPresentation *presentation() { return &m_presentation; }
    VeranoxMenuHeader *header() { return &m_header; }
    VeranoxServiceErrorBanner *banner() { return &m_banner; }
    VeranoxMenuFooter *footer() { return &m_footer; }
    QAbstractItemModel *profiles() { return &m_profiles; } // work profiles first
    VeranoxActiveRecordsView *tunnels() { return &m_tunnels; }
    VeranoxActiveRecordsView *publications() { return &m_publications; }
    // Of what a person did last in a row, of whichever kind; until they do something else.
    QString tunnelFailure() const { return failureOf(m_tunnels.commands()); }
    QString publicationFailure() const { return failureOf(m_publications.commands()); }
    bool hasProfiles() const;

    // The popover closes.
    Q_INVOKABLE void dismiss() const;

Q_SIGNALS:
    void changed();

private:
    void showProfiles();
    void follow(VeranoxRowCommands &commands);
    void setFailure(const VeranoxRowCommands &commands, const QString &failure);
    QString failureOf(const VeranoxRowCommands &commands) const;

    VeranoxStore &m_store;
    VeranoxMenuActions m_actions;
    VeranoxMenuPresentation m_presentation;
    VeranoxMenuHeader m_header;
    VeranoxServiceErrorBanner m_banner;
    VeranoxMenuFooter m_footer;
    VeranoxActiveTunnelsView m_tunnels;
    VeranoxActivePublicationsView m_publications;
    KeyedListModel<VeranoxActiveProfileRow> m_profiles;
    QString m_failure;
    Watches m_watches;
    const VeranoxRowCommands *m_failed = nullptr;
};
