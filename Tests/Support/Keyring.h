#pragma once
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDeadlineTimer>
#include <QProcess>
#include <QThread>
#include <chrono>
#include <gtest/gtest.h>

// A person's keyring with an empty master password.
class Keyring {
public:
    ~Keyring() { stop(); }

    bool start()
    {
        m_daemon.start(QStringLiteral("gnome-keyring-daemon"),
            {QStringLiteral("--unlock"), QStringLiteral("--components=secrets"), QStringLiteral("--foreground"),
                QStringLiteral("--control-directory=") + qEnvironmentVariable("XDG_RUNTIME_DIR")
                    + QStringLiteral("/keyring")});
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
        return QDBusConnection::sessionBus().interface()->isServiceRegistered(
            QStringLiteral("org.freedesktop.secrets"));
    }

    static void lock()
    {
        QDBusMessage call = QDBusMessage::createMethodCall(QStringLiteral("org.freedesktop.secrets"),
            QStringLiteral("/org/freedesktop/secrets"), QStringLiteral("org.freedesktop.Secret.Service"),
            QStringLiteral("Lock"));
        call << QVariant::fromValue(
            QList<QDBusObjectPath>{QDBusObjectPath(QStringLiteral("/org/freedesktop/secrets/collection/login"))});
        EXPECT_EQ(QDBusConnection::sessionBus().call(call).type(), QDBusMessage::ReplyMessage);
    }

private:
    QProcess m_daemon;
};
