#pragma once
#include "Platform/Linux/StatusNotifier/StatusNotifierTypes.h"
#include <QDBusAbstractAdaptor>
#include <QDBusObjectPath>

class StatusNotifierItem;

// The interface org.kde.StatusNotifierItem: what a host reads from the item and calls on it. The signals go out on the
// bus by themselves.
class StatusNotifierAdaptor : public QDBusAbstractAdaptor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.StatusNotifierItem")
    Q_PROPERTY(QString Category READ category CONSTANT)
    Q_PROPERTY(QString Id READ id CONSTANT)
    Q_PROPERTY(QString Title READ title CONSTANT)
    Q_PROPERTY(QString Status READ status CONSTANT)
    Q_PROPERTY(int WindowId READ windowId CONSTANT)
    Q_PROPERTY(bool ItemIsMenu READ itemIsMenu CONSTANT)
    Q_PROPERTY(QDBusObjectPath Menu READ menu)
    Q_PROPERTY(QString IconThemePath READ none CONSTANT)
    Q_PROPERTY(QString IconName READ none CONSTANT)
    Q_PROPERTY(QList<StatusNotifierPixmap> IconPixmap READ iconPixmaps)
    Q_PROPERTY(QString IconAccessibleDesc READ accessibleName)
    Q_PROPERTY(QString OverlayIconName READ none CONSTANT)
    Q_PROPERTY(QList<StatusNotifierPixmap> OverlayIconPixmap READ noPixmaps CONSTANT)
    Q_PROPERTY(QString AttentionIconName READ none CONSTANT)
    Q_PROPERTY(QList<StatusNotifierPixmap> AttentionIconPixmap READ noPixmaps CONSTANT)
    Q_PROPERTY(QString AttentionMovieName READ none CONSTANT)
    Q_PROPERTY(StatusNotifierToolTip ToolTip READ toolTip)

public:
    // Becomes part of the item, which is the object that is exported.
    explicit StatusNotifierAdaptor(StatusNotifierItem *item);

    QString category() const { return QStringLiteral("ApplicationStatus"); }
    QString id() const { return QStringLiteral("veranox-menu"); }
    QString title() const { return QStringLiteral("Veranox"); }
    QString status() const { return QStringLiteral("Active"); }
    int windowId() const { return 0; }
    bool itemIsMenu() const { return false; }
    QDBusObjectPath menu() const;
    QString none() const { return {}; }
    QList<StatusNotifierPixmap> noPixmaps() const { return {}; }
    QList<StatusNotifierPixmap> iconPixmaps() const;
    QString accessibleName() const;
    StatusNotifierToolTip toolTip() const;

public Q_SLOTS:
    // Calls of the host. The point is global; hosts that do not know it send 0, 0.
    void Activate(int x, int y);
    void ContextMenu(int x, int y);
    void SecondaryActivate(int x, int y);
    void Scroll(int delta, const QString &orientation);

Q_SIGNALS:
    void NewIcon();
    void NewIconAccessibleDesc();
    void NewToolTip();
    void NewMenu();
    void NewStatus(const QString &status);

private:
    StatusNotifierItem *m_item; // the parent
};
