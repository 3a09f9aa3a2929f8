// The passwords of tunnels in a real keyring.
#include "Platform/Linux/Secrets/SecretServiceTunnelSecrets.h"
#include "Tests/Support/BusMonitor.h"
#include "Tests/Support/Keyring.h"
#include "Tests/Support/QtPrinters.h"
#include "Tests/Support/RealWorld.h"
#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using Unlocking = VeranoxTunnelSecretStoring::Unlocking;

namespace {

template <class T> jobs::Async<> keep(jobs::Async<T> operation, std::optional<T> *result)
{
    result->emplace(co_await std::move(operation));
}

jobs::Async<bool> ended(jobs::Async<> operation)
{
    co_await std::move(operation);
    co_return true;
}

} // namespace

class TunnelSecretTests : public ::testing::Test {
protected:
    template <class T> T resultOf(jobs::Async<T> operation)
    {
        std::optional<T> result;
        jobs::JobScope scope(world.queue);
        scope.start(keep(std::move(operation), &result));
        EXPECT_TRUE(world.runUntil([&] { return result.has_value(); })) << "it still waits";
        return result.value_or(T());
    }

    void startKeyring()
    {
        ASSERT_TRUE(keyring.start());
        ASSERT_TRUE(world.runUntilPolled([] { return Keyring::isThere(); }));
    }

    std::optional<QString> read(const QString &name) { return resultOf(secrets.password(name, Unlocking::ask)); }
    std::optional<QString> readQuietly(const QString &name)
    {
        return resultOf(secrets.password(name, Unlocking::askOnce));
    }
    bool has(const QString &name) { return resultOf(secrets.hasPassword(name)); }
    bool write(const QString &password, const QString &name) { return resultOf(secrets.setPassword(password, name)); }
    void remove(const QString &name) { resultOf(ended(secrets.deletePassword(name))); }

    struct PollingWorld : RealWorld {
        // Looks again every few milliseconds: for what nothing tells of.
        template <class Condition> bool runUntilPolled(Condition condition)
        {
            QTimer poll;
            poll.start(std::chrono::milliseconds(5));
            return runUntil(condition);
        }
    };

    PollingWorld world;
    Keyring keyring;
    SecretServiceTunnelSecrets secrets{world.queue};
};

TEST_F(TunnelSecretTests, KeepsReplacesAndDeletesPasswords)
{
    startKeyring();
    EXPECT_FALSE(has(u"db"_s));
    EXPECT_EQ(read(u"db"_s), std::nullopt);
    EXPECT_TRUE(write(u"s3cr3t ünï ❤"_s, u"db"_s));
    EXPECT_TRUE(has(u"db"_s));
    EXPECT_EQ(read(u"db"_s), u"s3cr3t ünï ❤"_s);
    EXPECT_EQ(readQuietly(u"db"_s), u"s3cr3t ünï ❤"_s);
    EXPECT_TRUE(write(u"second"_s, u"db"_s));
    EXPECT_EQ(read(u"db"_s), u"second"_s);
    EXPECT_EQ(read(u"other"_s), std::nullopt);
    remove(u"db"_s);
    remove(u"db"_s);
    EXPECT_FALSE(has(u"db"_s));
    EXPECT_EQ(secrets.problem(), QString());
}

TEST_F(TunnelSecretTests, AnEmptyPasswordDeletesTheItem)
{
    startKeyring();
    EXPECT_TRUE(write(u"x"_s, u"db"_s));
    EXPECT_TRUE(write(QString(), u"db"_s));
    EXPECT_FALSE(has(u"db"_s));
    EXPECT_TRUE(write(QString(), u"db"_s));
}

TEST_F(TunnelSecretTests, ARenameMovesThePassword)
{
    startKeyring();
    ASSERT_TRUE(write(u"kept"_s, u"a"_s));
    ASSERT_TRUE(write(*read(u"a"_s), u"b"_s));
    remove(u"a"_s);
    EXPECT_EQ(read(u"a"_s), std::nullopt);
    EXPECT_EQ(read(u"b"_s), u"kept"_s);
}

TEST_F(TunnelSecretTests, AKeyringThatRestartedStillHasThem)
{
    startKeyring();
    ASSERT_TRUE(write(u"kept"_s, u"a"_s));
    keyring.stop();
    startKeyring();
    EXPECT_EQ(read(u"a"_s), u"kept"_s);
}

TEST_F(TunnelSecretTests, AKeyringThatWasJustReplacedTakesTheFirstWrite)
{
    startKeyring();
    ASSERT_TRUE(write(u"first"_s, u"a"_s));
    ASSERT_TRUE(keyring.replace());
    EXPECT_TRUE(write(u"second"_s, u"a"_s)) << secrets.problem().toStdString();
    EXPECT_EQ(secrets.problem(), QString());
    EXPECT_EQ(read(u"a"_s), u"second"_s);
}

TEST_F(TunnelSecretTests, AKeyringThatWasJustReplacedAnswersTheFirstRead)
{
    startKeyring();
    ASSERT_TRUE(write(u"kept"_s, u"a"_s));
    ASSERT_EQ(read(u"a"_s), u"kept"_s);
    ASSERT_TRUE(keyring.replace());
    EXPECT_EQ(read(u"a"_s), u"kept"_s) << secrets.problem().toStdString();
    ASSERT_TRUE(keyring.replace());
    EXPECT_TRUE(has(u"a"_s)) << secrets.problem().toStdString();
    ASSERT_TRUE(keyring.replace());
    EXPECT_EQ(readQuietly(u"a"_s), u"kept"_s) << secrets.problem().toStdString();
    ASSERT_TRUE(keyring.replace());
    remove(u"a"_s);
    EXPECT_EQ(secrets.problem(), QString());
    EXPECT_FALSE(has(u"a"_s));
}

TEST_F(TunnelSecretTests, AKeyringThatIsGoneIsAskedTwice)
{
    startKeyring();
    ASSERT_TRUE(write(u"kept"_s, u"a"_s));
    keyring.stop();
    BusMonitor monitor(u"SearchItems"_s);
    ASSERT_TRUE(monitor.isListening());
    EXPECT_FALSE(has(u"a"_s));
    QDBusConnection::sessionBus().call(QDBusMessage::createMethodCall(
        u"org.freedesktop.DBus"_s, u"/the/end"_s, u"org.freedesktop.Secret.Service"_s, u"SearchItems"_s));
    ASSERT_TRUE(world.runUntilPolled([&] { return monitor.hasSeen("path=/the/end"); }));
    EXPECT_EQ(monitor.calls("SearchItems") - 1, 2);
}

TEST_F(TunnelSecretTests, ALockedKeyringShowsWhatItHasAndAsksOnceByItself)
{
    startKeyring();
    ASSERT_TRUE(write(u"kept"_s, u"a"_s));
    Keyring::lock();
    BusMonitor monitor(u"Unlock"_s);
    ASSERT_TRUE(monitor.isListening());
    EXPECT_TRUE(has(u"a"_s));
    EXPECT_EQ(monitor.calls("Unlock"), 0);
    EXPECT_EQ(readQuietly(u"a"_s), std::nullopt);
    EXPECT_TRUE(world.runUntilPolled([&] { return monitor.calls("Unlock") == 1; }));
    EXPECT_EQ(readQuietly(u"a"_s), std::nullopt);
    EXPECT_EQ(readQuietly(u"a"_s), std::nullopt);
    EXPECT_TRUE(has(u"a"_s));
    EXPECT_EQ(monitor.calls("Unlock"), 1);
    EXPECT_EQ(read(u"a"_s), std::nullopt) << "nobody is there to unlock it";
    EXPECT_TRUE(world.runUntilPolled([&] { return monitor.calls("Unlock") == 2; })) << "for a person it asks again";
}

TEST_F(TunnelSecretTests, WithoutAKeyringItSaysSo)
{
    EXPECT_EQ(secrets.problem(), QString()) << "nothing is known yet";
    EXPECT_FALSE(has(u"a"_s));
    EXPECT_EQ(read(u"a"_s), std::nullopt);
    EXPECT_FALSE(write(u"x"_s, u"a"_s));
    remove(u"a"_s);
    EXPECT_TRUE(secrets.problem().startsWith(u"This desktop has no keyring"_s)) << secrets.problem().toStdString();
    startKeyring();
    EXPECT_TRUE(write(u"x"_s, u"a"_s));
    EXPECT_EQ(secrets.problem(), QString());
}

TEST_F(TunnelSecretTests, ItMayDieWhileAKeyringIsAsked)
{
    startKeyring();
    {
        SecretServiceTunnelSecrets shortLived(world.queue);
        jobs::JobScope scope(world.queue);
        scope.start(shortLived.hasPassword(u"a"_s));
        bool isTurnOver = false;
        QTimer::singleShot(0, qApp, [&] { isTurnOver = true; });
        ASSERT_TRUE(world.runUntil([&] { return isTurnOver; }));
    }
    EXPECT_TRUE(write(u"x"_s, u"a"_s)) << secrets.problem().toStdString();
}
