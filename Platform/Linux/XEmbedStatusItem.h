#pragma once
#include "Platform/Linux/XEmbedTrayWatcher.h"
#include "Platform/StatusItem.h"
#include <QSystemTrayIcon>

// The status item of X panels that embed a window, through QSystemTrayIcon. Qt chooses between StatusNotifier and
// XEmbed for the whole process when the first QSystemTrayIcon is made: this one must be made while the bus has no
// StatusNotifier host. The tray pops the menu up itself on a secondary click.
class XEmbedStatusItem : public StatusItem {
    Q_OBJECT

public:
    explicit XEmbedStatusItem(QObject *parent = nullptr);

    void setIcon(const QIcon &icon) override;
    void setToolTip(const QString &text) override;
    void setAccessibleName(const QString &name) override; // not carried by the protocol: the tool tip stands for it
    void setMenu(QMenu *menu) override;
    bool isAvailable() const override;
    QRect geometry() const override;
    bool isBeingPlaced() const override;

    // Takes part in the tray or steps back from it.
    void setVisible(bool visible);

private:
    void handleActivation(QSystemTrayIcon::ActivationReason reason);
    void noteAvailability();

    QSystemTrayIcon m_icon;
    XEmbedTrayWatcher m_trays;
    bool m_wasAvailable = false;
};
