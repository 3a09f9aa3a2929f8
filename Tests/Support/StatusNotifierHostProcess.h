#pragma once
#include "Tests/Support/Eventually.h"
#include <QProcess>
#include <QString>

// A StatusNotifier host in a process of its own. The caller's event loop runs while it waits, so that an item in this
// process can answer the host.
class StatusNotifierHostProcess {
public:
    // Starts the host and waits until it stands.
    explicit StatusNotifierHostProcess(const QStringList &arguments = {})
    {
        m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        m_process.start(QCoreApplication::applicationDirPath() + QStringLiteral("/status_notifier_host"), arguments);
        m_stands = readLine() == QStringLiteral("READY");
    }
    ~StatusNotifierHostProcess() { stop(); }

    bool stands() const { return m_stands; }

    // The host's answer to one command, empty when none comes.
    QString ask(const QString &command)
    {
        m_process.write(command.toUtf8() + '\n');
        return readLine();
    }

    // Whether the host comes to give this answer to the command.
    bool comesToSay(const QString &command, const QString &answer)
    {
        return eventually([&] { return ask(command) == answer; });
    }

    // Whether exactly one item comes to be registered.
    bool comesToShowOneItem()
    {
        return eventually([this] { return ask(QStringLiteral("items")).count(u'/') == 1; });
    }

    void stop()
    {
        m_process.closeWriteChannel();
        eventually([this] { return m_process.state() == QProcess::NotRunning; });
    }

private:
    QString readLine()
    {
        eventually([this] { return m_process.canReadLine() || m_process.state() == QProcess::NotRunning; });
        return QString::fromUtf8(m_process.readLine()).trimmed();
    }

    QProcess m_process;
    bool m_stands = false;
};
