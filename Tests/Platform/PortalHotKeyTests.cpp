#include "Platform/Linux/HotKey/PortalHotKey.h"
#include "Tests/Support/Eventually.h"
#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QSignalSpy>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

// The desktop's side of global shortcuts, with a person behind it who agrees or does not.
class FakePortal final : public QDBusVirtualObject {
public:
    explicit FakePortal(QDBusConnection bus) : m_bus(std::move(bus))
    {
        m_bus.registerVirtualObject(u"/org/freedesktop/portal/desktop"_s, this, QDBusConnection::SubPath);
        EXPECT_TRUE(m_bus.registerService(u"org.freedesktop.portal.Desktop"_s));
    }

    QString introspect(const QString &) const override { return {}; }

    bool handleMessage(const QDBusMessage &message, const QDBusConnection &connection) override
    {
        calls.append(message.member());
        if (message.member() == "CreateSession"_L1) {
            const QVariantMap options = qdbus_cast<QVariantMap>(message.arguments().at(0));
            session =
                u"/org/freedesktop/portal/desktop/session/x/"_s + options.value(u"session_handle_token"_s).toString();
            sessions.append(session);
            answer(message, options, {{u"session_handle"_s, session}});
        } else if (message.member() == "BindShortcuts"_L1) {
            bound = qvariant_cast<QDBusObjectPath>(message.arguments().at(0)).path();
            everBound.append(bound);
            readShortcut(message.arguments().at(1).value<QDBusArgument>());
            answer(message, qdbus_cast<QVariantMap>(message.arguments().at(3)), {});
        } else {
            if (message.member() == "Close"_L1)
                closed.append(message.path());
            connection.send(message.createReply());
        }
        return true;
    }

    void press(const QString &inSession, const QString &shortcutID)
    {
        QDBusMessage signal = QDBusMessage::createSignal(
            u"/org/freedesktop/portal/desktop"_s, u"org.freedesktop.portal.GlobalShortcuts"_s, u"Activated"_s);
        signal << QVariant::fromValue(QDBusObjectPath(inSession)) << shortcutID << qulonglong(1) << QVariantMap();
        m_bus.send(signal);
    }

    // Sends the answers that it was told to hold back.
    void release()
    {
        holdsBack = false;
        for (const QDBusMessage &response : std::exchange(m_held, {}))
            m_bus.send(response);
    }

    QStringList calls, sessions, everBound, closed;
    bool holdsBack = false;
    QString session, bound, id, trigger;
    uint verdict = 0; // 0: agreed, 1: the person declined

private:
    void readShortcut(const QDBusArgument &list)
    {
        QVariantMap properties;
        list.beginArray();
        list.beginStructure();
        list >> id >> properties;
        list.endStructure();
        list.endArray();
        trigger = properties.value(u"preferred_trigger"_s).toString();
    }

    void answer(const QDBusMessage &message, const QVariantMap &options, const QVariantMap &results)
    {
        const QString caller = message.service().mid(1).replace(u'.', u'_');
        const QString request =
            u"/org/freedesktop/portal/desktop/request/%1/%2"_s.arg(caller, options.value(u"handle_token"_s).toString());
        m_bus.send(message.createReply(QVariant::fromValue(QDBusObjectPath(request))));
        QDBusMessage response = QDBusMessage::createSignal(request, u"org.freedesktop.portal.Request"_s, u"Response"_s);
        response << verdict << results;
        if (holdsBack)
            m_held.append(response);
        else
            m_bus.send(response);
    }

    QDBusConnection m_bus;
    QList<QDBusMessage> m_held;
};

class HotKeyThroughThePortal : public ::testing::Test {
protected:
    ~HotKeyThroughThePortal() override { QDBusConnection::disconnectFromBus(u"portal"_s); }

    const VeranoxGlobalShortcut shortcut = VeranoxGlobalShortcut::presets().constFirst();
    FakePortal portal{QDBusConnection::connectToBus(QDBusConnection::SessionBus, u"portal"_s)};
    PortalHotKey hotKey{QDBusConnection::sessionBus()};
    QSignalSpy presses{&hotKey, &PortalHotKey::triggered};
};

} // namespace

TEST_F(HotKeyThroughThePortal, bindsTheCombinationAndFires)
{
    hotKey.configure(shortcut);
    ASSERT_TRUE(eventually([this] { return hotKey.isRegistered(); }));
    EXPECT_EQ(portal.calls, QStringList({u"CreateSession"_s, u"BindShortcuts"_s}));
    EXPECT_EQ(portal.bound, portal.session);
    EXPECT_EQ(portal.trigger, u"ALT+LOGO+comma"_s);
    portal.press(u"/another/session"_s, portal.id);
    portal.press(portal.session, u"another"_s);
    portal.press(portal.session, portal.id);
    ASSERT_TRUE(eventually([this] { return presses.count() > 0; }));
    EXPECT_EQ(presses.count(), 1);
}

TEST_F(HotKeyThroughThePortal, aPersonWhoDeclinesLeavesNone)
{
    portal.verdict = 1;
    hotKey.configure(shortcut);
    ASSERT_TRUE(eventually([this] { return !portal.calls.isEmpty(); }));
    eventually([] { return false; }, std::chrono::milliseconds(50)); // let the answer arrive
    EXPECT_FALSE(hotKey.isRegistered());
    EXPECT_EQ(portal.calls, QStringList({u"CreateSession"_s}));
}

TEST_F(HotKeyThroughThePortal, aChangeMakesANewSession)
{
    hotKey.configure(shortcut);
    ASSERT_TRUE(eventually([this] { return hotKey.isRegistered(); }));
    const QString first = portal.session;
    hotKey.configure(VeranoxGlobalShortcut::presets().constLast());
    EXPECT_FALSE(hotKey.isRegistered());
    ASSERT_TRUE(eventually([this] { return hotKey.isRegistered(); }));
    EXPECT_NE(portal.session, first);
    EXPECT_EQ(portal.trigger, u"CTRL+ALT+LOGO+t"_s);
    EXPECT_TRUE(portal.calls.contains(u"Close"_s));
}

TEST_F(HotKeyThroughThePortal, aChangeBeforeTheAnswerLeavesOneSession)
{
    portal.holdsBack = true;
    hotKey.configure(shortcut);
    hotKey.configure(VeranoxGlobalShortcut::presets().constLast());
    ASSERT_TRUE(eventually([this] { return portal.sessions.size() == 2; }));
    portal.release();
    ASSERT_TRUE(eventually([this] { return hotKey.isRegistered() && !portal.closed.isEmpty(); }));
    EXPECT_EQ(portal.closed, QStringList(portal.sessions.constFirst()));
    EXPECT_EQ(portal.everBound, QStringList(portal.sessions.constLast()));
    EXPECT_EQ(portal.trigger, u"CTRL+ALT+LOGO+t"_s);
}

TEST_F(HotKeyThroughThePortal, anAnswerThatComesAfterTheShortcutWasTakenAwayIsUndone)
{
    portal.holdsBack = true;
    hotKey.configure(shortcut);
    ASSERT_TRUE(eventually([this] { return portal.sessions.size() == 1; }));
    hotKey.configure({});
    portal.release();
    ASSERT_TRUE(eventually([this] { return !portal.closed.isEmpty(); }));
    EXPECT_EQ(portal.closed, portal.sessions);
    EXPECT_EQ(portal.everBound, QStringList());
    EXPECT_FALSE(hotKey.isRegistered());
}

TEST(HotKeyWithoutAPortal, leavesNoneAndHarmsNothing)
{
    PortalHotKey hotKey(QDBusConnection::sessionBus());
    hotKey.configure(VeranoxGlobalShortcut::presets().constFirst());
    eventually([] { return false; }, std::chrono::milliseconds(50));
    EXPECT_FALSE(hotKey.isRegistered());
}
