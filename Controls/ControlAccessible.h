#pragma once
#include <QAccessibleActionInterface>
#include <QAccessibleObject>

class QQuickItem;

// A button or check box as assistive programs see it. Unlike Qt's own up to 6.4 it says when the control is disabled.
// The words and what an action does are those of the control's Accessible properties.
class ControlAccessible final : public QAccessibleObject, public QAccessibleActionInterface {
public:
    explicit ControlAccessible(QQuickItem *item);

    // Has Qt ask this class about buttons and check boxes from then on. Any number of calls do what one does.
    static void install();

    QWindow *window() const override;
    QRect rect() const override;
    QAccessibleInterface *parent() const override;
    int childCount() const override { return 0; }
    QAccessibleInterface *child(int) const override { return nullptr; }
    int indexOfChild(const QAccessibleInterface *) const override { return -1; }
    QAccessibleInterface *childAt(int, int) const override { return nullptr; }
    QString text(QAccessible::Text text) const override;
    void setText(QAccessible::Text, const QString &) override { }
    QAccessible::Role role() const override;
    QAccessible::State state() const override;
    void *interface_cast(QAccessible::InterfaceType type) override;

    QStringList actionNames() const override;
    void doAction(const QString &name) override;
    QStringList keyBindingsForAction(const QString &) const override { return {}; }

private:
    QQuickItem *item() const;
    QObject *words() const; // the control's Accessible properties; null when it has none
    QString said(const char *property) const;
    bool isOffScreen() const;
};
