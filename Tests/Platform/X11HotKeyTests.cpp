#include "Platform/Linux/HotKey/X11HotKey.h"
#include "Tests/Support/Eventually.h"
#include <QGuiApplication>
#include <QProcess>
#include <QSignalSpy>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

constexpr std::uint32_t comma = 43;
constexpr std::uint32_t letterZ = 6;
constexpr std::uint32_t controlOption = VeranoxGlobalShortcut::control | VeranoxGlobalShortcut::option;

VeranoxGlobalShortcut shortcut(std::uint32_t keyCode, std::uint32_t modifiers)
{
    return {u"custom"_s, u"test"_s, keyCode, modifiers};
}

xcb_connection_t *connection()
{
    return qGuiApp->nativeInterface<QNativeInterface::QX11Application>()->connection();
}

void run(const QString &program, const QStringList &arguments)
{
    ASSERT_EQ(QProcess::execute(program, arguments), 0) << qPrintable(program);
}

void press(const QString &keys)
{
    run(u"xdotool"_s, {u"key"_s, keys});
}

class HotKeyOnX11 : public ::testing::Test {
protected:
    // Presses the keys, then the combination itself, which arrives after anything that came before it.
    void expectPresses(const QString &keys, qsizetype expected)
    {
        presses.clear();
        press(keys);
        press(u"ctrl+alt+comma"_s);
        EXPECT_TRUE(eventually([this, expected] { return presses.count() > expected; })) << qPrintable(keys);
        EXPECT_EQ(presses.count(), expected + 1) << qPrintable(keys);
    }

    X11HotKey hotKey{connection()};
    QSignalSpy presses{&hotKey, &X11HotKey::triggered};
};

} // namespace

TEST_F(HotKeyOnX11, firesForItsCombinationAndForNoOther)
{
    hotKey.configure(shortcut(comma, controlOption));
    ASSERT_TRUE(hotKey.isRegistered());
    expectPresses(u"comma"_s, 0);
    expectPresses(u"ctrl+comma"_s, 0);
    expectPresses(u"ctrl+alt+shift+comma"_s, 0);
    expectPresses(u"ctrl+alt+comma"_s, 1);
}

TEST_F(HotKeyOnX11, firesWithCapsLockAndNumLockOn)
{
    hotKey.configure(shortcut(comma, controlOption));
    for (const QString &lock : {u"Caps_Lock"_s, u"Num_Lock"_s}) {
        press(lock);
        expectPresses(u"ctrl+alt+comma"_s, 1);
        press(lock);
    }
}

TEST_F(HotKeyOnX11, aCombinationThatIsTakenLeavesNone)
{
    hotKey.configure(shortcut(comma, controlOption));
    // Another client of the display, as another program would be.
    xcb_connection_t *const other = xcb_connect(nullptr, nullptr);
    {
        X11HotKey second(other);
        second.configure(shortcut(comma, controlOption));
        EXPECT_FALSE(second.isRegistered());
        hotKey.configure(std::nullopt);
        EXPECT_FALSE(hotKey.isRegistered());
        second.configure(shortcut(comma, controlOption));
        EXPECT_TRUE(second.isRegistered());
    }
    xcb_disconnect(other);
}

TEST_F(HotKeyOnX11, aKeyWithoutASymbolLeavesNone)
{
    hotKey.configure(shortcut(127, controlOption));
    EXPECT_FALSE(hotKey.isRegistered());
}

TEST_F(HotKeyOnX11, followsAChangeOfTheLayout)
{
    hotKey.configure(shortcut(letterZ, controlOption));
    run(u"setxkbmap"_s, {u"de"_s}); // z and y change places
    ASSERT_TRUE(eventually([this] {
        press(u"ctrl+alt+z"_s);
        return presses.count() > 0;
    }));
    EXPECT_TRUE(hotKey.isRegistered());
}
