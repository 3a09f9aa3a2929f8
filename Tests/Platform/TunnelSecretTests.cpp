// The passwords of tunnels in a real keyring.
#include "Platform/Linux/Secrets/SecretServiceTunnelSecrets.h"
#include "Tests/Support/QtPrinters.h"
#include "Tests/Support/RealWorld.h"
#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDeadlineTimer>
#include <QProcess>
#include <QThread>
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

// A person's keyring with an empty master password.
class Keyring {
public:
    ~Keyring() { stop(); }

    bool start()
    {
        m_daemon.start(u"gnome-keyring-daemon"_s,
            {u"--unlock"_s, u"--components=secrets"_s, u"--foreground"_s,
                u"--control-directory="_s + qEnvironmentVariable("XDG_RUNTIME_DIR") + u"/keyring"_s});
        m_daemon.write("\n");
        m_daemon.closeWriteChannel();
        return m_daemon.waitForStarted() && m_daemon.waitForBytesWritten();
    }

    void stop()
    {
        m_daemon.terminate();
        m_daemon.waitForFinished();
    }

    // Another daemon in place of one that dies at once. Nothing else of this program runs meanwhile, so whatever it
    // knows of the old one is out of date.
    bool replace()
    {
        m_daemon.kill();
        m_daemon.waitForFinished();
        if (!start())
            return false;
        const QDeadlineTimer patience(std::chrono::seconds(30));
        while (!isThere() && !patience.hasExpired())
            QThread::yieldCurrentThread();
        return isThere();
    }

    static bool isThere()
    {
        return QDBusConnection::sessionBus().interface()->isServiceRegistered(u"org.freedesktop.secrets"_s);
    }

    static void lock()
    {
        QDBusMessage call = QDBusMessage::createMethodCall(u"org.freedesktop.secrets"_s, u"/org/freedesktop/secrets"_s,
            u"org.freedesktop.Secret.Service"_s, u"Lock"_s);
        call << QVariant::fromValue(
            QList<QDBusObjectPath>{QDBusObjectPath(u"/org/freedesktop/secrets/collection/login"_s)});
        EXPECT_EQ(QDBusConnection::sessionBus().call(call).type(), QDBusMessage::ReplyMessage);
    }

private:
    QProcess m_daemon;
};

// Counts the calls of one method on the bus.
class BusMonitor {
public:
    explicit BusMonitor(const QString &method)
    {
        m_monitor.start(u"dbus-monitor"_s, {u"--session"_s, u"type='method_call',member='%1'"_s.arg(method)});
    }
    ~BusMonitor()
    {
        m_monitor.terminate();
        m_monitor.waitForFinished();
    }

    bool isListening() { return m_monitor.waitForReadyRead() && m_monitor.readAll().contains("NameAcquired"); }

    qsizetype calls(const QByteArray &method) { return output().count("member=" + method); }
    bool hasSeen(const QByteArray &text) { return output().contains(text); }

private:
    const QByteArray &output()
    {
        m_output += m_monitor.readAll();
        return m_output;
    }

    QProcess m_monitor;
    QByteArray m_output;
};

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
