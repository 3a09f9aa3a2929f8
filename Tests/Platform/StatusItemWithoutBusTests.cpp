#include "Platform/Platform.h"
#include "Tests/Support/XEmbedTray.h"
#include <QPixmap>
#include <gtest/gtest.h>

TEST(StatusItemWithoutABus, StillGoesIntoATrayThatEmbeds)
{
    const auto item = platform::makeStatusItem();
    QPixmap picture(22, 22);
    picture.fill(Qt::green);
    item->setIcon(QIcon(picture));
    EXPECT_FALSE(item->isAvailable());
    XEmbedTray tray;
    EXPECT_TRUE(eventually([&] { return item->isAvailable() && !item->geometry().isEmpty(); }));
}
