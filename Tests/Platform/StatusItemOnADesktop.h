// The item of the tray on a desktop that shows it, as a StatusNotifier host or an XEmbed tray.
#pragma once
#include "Platform/Linux/TrayStatusItem.h"
#include "Tests/Support/Eventually.h"
#include "Tests/Support/XEmbedTray.h"
#include <QGuiApplication>
#include <QMenu>
#include <QPixmap>
#include <QProcess>
#include <QScreen>
#include <gtest/gtest.h>

inline const QColor itemColor(0x4E, 0xC9, 0x8F);

inline QIcon filled(const QColor &color)
{
    QPixmap picture(44, 44);
    picture.fill(color);
    return QIcon(picture);
}

inline void xdotool(const QString &arguments)
{
    ASSERT_EQ(QProcess::execute(QStringLiteral("xdotool"), arguments.split(u' ')), 0) << qUtf8Printable(arguments);
}

class StatusItemOnADesktop : public ::testing::Test {
protected:
    void SetUp() override
    {
        item = std::make_unique<TrayStatusItem>(QDBusConnection::sessionBus());
        QObject::connect(item.get(), &StatusItem::availableChanged, item.get(),
            [this](bool available) { availability << available; });
        QObject::connect(
            item.get(), &StatusItem::primaryActivated, item.get(), [this](QPoint where) { primaryClicks << where; });
        QObject::connect(
            item.get(), &StatusItem::menuRequested, item.get(), [this](QPoint where) { menuRequests << where; });
        item->setIcon(filled(itemColor));
        item->setToolTip(QStringLiteral("Veranox — Online"));
        item->setAccessibleName(QStringLiteral("Veranox — Online"));
    }

    bool comesToBe(bool available)
    {
        return eventually([&] { return item->isAvailable() == available; });
    }

    // Whether the item's colour is on the screen where the item says that it is.
    bool isSeen() const
    {
        const QRect place = item->geometry();
        if (place.isEmpty())
            return false;
        const QImage shot = QGuiApplication::primaryScreen()
                                ->grabWindow(0, place.x(), place.y(), place.width(), place.height())
                                .toImage();
        return shot.pixelColor(shot.rect().center()) == itemColor;
    }

    // Whether the tray comes to show the item. trayer now and then never lays out an icon that asks for a place during
    // its start, and leaves it outside the screen: that trayer is started again.
    bool comesToBeSeenIn(XEmbedTray &tray)
    {
        for (int attempt = 0; attempt < 5; ++attempt) {
            if (eventually([this] { return isSeen(); }, std::chrono::seconds(5)))
                return true;
            if (!item->isBeingPlaced())
                return false;
            tray.restart();
        }
        return false;
    }

    // Clicks on the item until that has an effect. Again only if the tray has moved the item in the meantime.
    bool click(const QString &how, std::predicate auto hasEffect)
    {
        for (int attempt = 0; attempt < 10; ++attempt) {
            const QPoint center = item->geometry().center();
            xdotool(QStringLiteral("mousemove %1 %2 %3").arg(center.x()).arg(center.y()).arg(how));
            if (eventually(hasEffect, std::chrono::seconds(5)))
                return true;
            if (item->geometry().center() == center)
                return false;
        }
        return false;
    }

    // Lets everything happen that is under way on the bus and on the display.
    void settle() const
    {
        for (int turn = 0; turn < 5; ++turn) {
            QProcess::execute(
                QStringLiteral("xprop"), {QStringLiteral("-root"), QStringLiteral("_NET_SUPPORTING_WM_CHECK")});
            QCoreApplication::processEvents();
        }
    }

    QMenu menu; // outlives the item
    QList<bool> availability;
    QList<QPoint> primaryClicks;
    QList<QPoint> menuRequests;
    std::unique_ptr<TrayStatusItem> item;
};
