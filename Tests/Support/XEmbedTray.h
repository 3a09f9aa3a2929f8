#pragma once
#include "Tests/Support/Eventually.h"
#include <QProcess>

// A real tray of the XEmbed kind, at the right end of the upper edge of the screen.
class XEmbedTray {
public:
    XEmbedTray()
    {
        m_process.setStandardErrorFile(QProcess::nullDevice());
        m_process.setStandardOutputFile(QProcess::nullDevice());
        start();
    }
    ~XEmbedTray() { stop(); }

    void restart()
    {
        stop();
        start();
    }

    void stop()
    {
        m_process.terminate();
        eventually([this] { return m_process.state() == QProcess::NotRunning; });
    }

private:
    void start()
    {
        const auto arguments = QStringLiteral("--edge top --align right --widthtype request --heighttype pixel "
                                              "--height 28 --SetDockType true --transparent false --tint 0x808080");
        m_process.start(QStringLiteral("trayer"), arguments.split(u' '));
    }

    QProcess m_process;
};
