#pragma once
#include "Platform/Linux/StatusNotifier/StatusNotifierItem.h"
#include "Platform/Linux/XEmbedStatusItem.h"
#include "Platform/StatusItem.h"
#include <QPointer>

// The status item of a Linux desktop: on a StatusNotifier panel while there is one, else in an XEmbed tray. It moves
// from one to the other whenever they come or go, and waits when there is neither.
class TrayStatusItem : public StatusItem {
    Q_OBJECT

public:
    explicit TrayStatusItem(const QDBusConnection &bus, QObject *parent = nullptr);

    void setIcon(const QIcon &icon) override;
    void setToolTip(const QString &text) override;
    void setAccessibleName(const QString &name) override;
    void setMenu(QMenu *menu) override;
    bool isAvailable() const override;
    QRect geometry() const override;

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
    StatusNotifierItem m_notifier;
    std::unique_ptr<XEmbedStatusItem> m_xembed; // made when first needed
};
