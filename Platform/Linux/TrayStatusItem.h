#pragma once
#include "Platform/Linux/StatusNotifier/StatusNotifierItem.h"
#include "Platform/Linux/XEmbedStatusItem.h"
#include "Platform/StatusItem.h"
#include <QPointer>
#include <QStringList>

// The status item of a Linux desktop: on a StatusNotifier panel while there is one, else in an XEmbed tray. It moves
// from one to the other whenever they come or go, and waits when there is neither.
class TrayStatusItem : public StatusItem {
    Q_OBJECT

public:
    // The names of the desktop are those of XDG_CURRENT_DESKTOP.
    explicit TrayStatusItem(
        const QDBusConnection &bus, const QStringList &desktopNames = {}, QObject *parent = nullptr);

    void setIcon(const QIcon &icon) override;
    void setToolTip(const QString &text) override;
    void setAccessibleName(const QString &name) override;
    void setMenu(QMenu *menu) override;
    bool isAvailable() const override;
    bool showsOnlyMenu() const override { return m_showsOnlyMenu; }
    QRect geometry() const override;
    bool isBeingPlaced() const override;

private:
    void choose();
    void makeXEmbedItem();
    void relay(StatusItem *item);
    void noteAvailability();

    QIcon m_icon;
    QString m_toolTip;
    QString m_accessibleName;
    QPointer<QMenu> m_menu;
    bool m_wasAvailable = false;
    bool m_showsOnlyMenu;
    StatusNotifierItem m_notifier;
    std::unique_ptr<XEmbedStatusItem> m_xembed; // made when first needed
};
