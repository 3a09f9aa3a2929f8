#pragma once
#include <QProcess>

// Counts the calls of one method on the bus.
class BusMonitor {
public:
    explicit BusMonitor(const QString &method)
    {
        m_monitor.start(QStringLiteral("dbus-monitor"),
            {QStringLiteral("--session"), QStringLiteral("type='method_call',member='%1'").arg(method)});
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
