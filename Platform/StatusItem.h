#pragma once
#include <QIcon>
#include <QObject>
#include <QPoint>
#include <QRect>
#include <QString>

class QMenu;

// The application's icon in the desktop's panel or menu bar. It can be set up at any time: it shows itself as soon as
// there is something that takes it in, for as long as there is, and goes with its destruction. Main thread only.
class StatusItem : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

    // The picture, square. It is drawn at whatever size the panel asks for. An icon whose isMask() is set is coloured
    // by the system where the system does that.
    virtual void setIcon(const QIcon &icon) = 0;

    // Plain text, shown while the pointer rests on the item.
    virtual void setToolTip(const QString &text) = 0;

    // What a screen reader says for the item.
    virtual void setAccessibleName(const QString &name) = 0;

    // The context menu, not owned; null for none. Where the panel draws menus itself it shows this one and triggers its
    // actions; elsewhere menuRequested asks the owner to pop it up. Later changes of its actions are followed.
    virtual void setMenu(QMenu *menu) = 0;

    // Whether something on this desktop shows the item right now.
    virtual bool isAvailable() const = 0;

    // Whether this desktop answers every click with the menu, so that primaryActivated never comes.
    virtual bool showsOnlyMenu() const { return false; }

    // Where the item stands in global coordinates; empty when the panel does not tell.
    virtual QRect geometry() const = 0;

    // Whether a panel is just taking the item in, and geometry() may soon tell more.
    virtual bool isBeingPlaced() const { return false; }

Q_SIGNALS:
    // The item was clicked with the primary button. The point is global, null when the panel does not tell.
    void primaryActivated(QPoint where);

    // The context menu was asked for, by a secondary click or a control-click, and nobody has drawn it: the owner pops
    // it up. The point is global, null when the panel does not tell.
    void menuRequested(QPoint where);

    // isAvailable() has changed to this value.
    void availableChanged(bool available);
};
