#pragma once
#include "Platform/StatusItem.h"
#include <QSystemTrayIcon>

// The status item of the macOS menu bar, through QSystemTrayIcon. The menu is not handed to Qt, which would open it on
// the primary click too.
class SystemTrayStatusItem : public StatusItem {
    Q_OBJECT

public:
    explicit SystemTrayStatusItem(QObject *parent = nullptr);

    void setIcon(const QIcon &icon) override;
    void setToolTip(const QString &text) override;
    void setAccessibleName(const QString &name) override; // Qt gives the button its tool tip
    void setMenu(QMenu *menu) override;
    bool isAvailable() const override;
    QRect geometry() const override;

private:
    void handleActivation(QSystemTrayIcon::ActivationReason reason);

    QSystemTrayIcon m_icon;
};
