#pragma once
#include <QPointer>
#include <QQuickItem>
#include <QQuickWindow>

// Scrolls a Flickable to what the keyboard comes to in it, with some room around. What the pointer presses stays where
// it is.
class FocusReveal : public QObject {
    Q_OBJECT
    QML_NAMED_ELEMENT(FocusReveal)
    Q_PROPERTY(QQuickItem *flickable READ flickable WRITE setFlickable NOTIFY flickableChanged)
    Q_PROPERTY(double room MEMBER m_room NOTIFY roomChanged) // pixels

public:
    using QObject::QObject;

    QQuickItem *flickable() const { return m_flickable; }
    void setFlickable(QQuickItem *flickable);

Q_SIGNALS:
    void flickableChanged();
    void roomChanged();

private:
    void follow(QQuickWindow *window);
    void reveal(const QQuickItem *focused);

    QPointer<QQuickItem> m_flickable;
    QMetaObject::Connection m_windows;
    QMetaObject::Connection m_focus;
    double m_room = 0;
};
