// A window off screen in which QML is tried; every warning of Qt's fails the test.
#pragma once
#include "Controls/QmlEngine.h"
#include "Tests/Support/FixedTheme.h"
#include "Tests/Support/QtPrinters.h"
#include <QGuiApplication>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <QTest>
#include <gtest/gtest.h>

// Fails the test at each warning while it lives.
class NoWarnings {
public:
    NoWarnings() : m_previous(qInstallMessageHandler(fail)) { }
    ~NoWarnings() { qInstallMessageHandler(m_previous); }
    NoWarnings(const NoWarnings &) = delete;
    NoWarnings &operator=(const NoWarnings &) = delete;

private:
    static void fail(QtMsgType type, const QMessageLogContext &, const QString &text)
    {
        // The offscreen platform says so of every window, whatever is in it.
        if (type != QtDebugMsg && type != QtInfoMsg && !text.startsWith(u"This plugin does not support"))
            ADD_FAILURE() << qUtf8Printable(text);
    }
    QtMessageHandler m_previous;
};

// The item of that objectName at or below this one, what models have made included; null when there is none.
inline QQuickItem *itemNamed(QQuickItem *item, const QString &name)
{
    if (item->objectName() == name)
        return item;
    for (QQuickItem *child : item->childItems())
        if (QQuickItem *found = itemNamed(child, name))
            return found;
    return nullptr;
}

class QmlStage : public ::testing::Test {
protected:
    // Shows what the QML text describes, with the controls imported. It has the focus of the keyboard.
    QQuickItem *show(const QByteArray &qml)
    {
        QQmlComponent component(&engine.engine());
        component.setData("import QtQuick\nimport Veranox.Controls\n" + qml, QUrl(QStringLiteral("qrc:/stage.qml")));
        auto *item = qobject_cast<QQuickItem *>(component.create());
        EXPECT_NE(item, nullptr) << qUtf8Printable(component.errorString());
        if (item)
            show(std::unique_ptr<QQuickItem>(item));
        return item;
    }

    void show(std::unique_ptr<QQuickItem> item)
    {
        shown = std::move(item);
        shown->setParentItem(window.contentItem());
        window.resize(900, 700);
        window.show();
        window.requestActivate();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
        shown->forceActiveFocus(Qt::TabFocusReason);
    }

    // The item of that objectName.
    QQuickItem *find(const QString &name) const
    {
        auto *item = itemNamed(shown.get(), name);
        EXPECT_NE(item, nullptr) << qUtf8Printable(name);
        return item;
    }

    void click(const QQuickItem &item)
    {
        const QPointF centre = item.mapToScene({item.width() / 2, item.height() / 2});
        QTest::mouseClick(&window, Qt::LeftButton, {}, centre.toPoint());
    }

    NoWarnings noWarnings;
    FixedTheme theme{false};
    QmlEngine engine{theme};
    QQmlEngine &made = engine.engine(); // chooses how windows are drawn, and so comes before the first one
    QQuickWindow window;
    std::unique_ptr<QQuickItem> shown;
};
