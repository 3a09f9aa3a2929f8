#pragma once
#include <QObject>
#include <QSocketNotifier>
#include <array>
#include <csignal>
#include <memory>

// Brings SIGTERM, SIGINT and SIGHUP to the event loop; they no longer end the process. A SIGHUP that was ignored when
// the process began (nohup) stays so. The former handlers come back with the destruction. One at a time in a process.
class UnixSignals : public QObject {
    Q_OBJECT

public:
    explicit UnixSignals(QObject *parent = nullptr);
    ~UnixSignals() override;

Q_SIGNALS:
    // At least one of the signals has come since the last time.
    void received();

private:
    static constexpr std::array watched{SIGTERM, SIGINT, SIGHUP};

    void drain();

    std::array<int, 2> m_sockets{-1, -1}; // the handler writes to the second, the event loop reads from the first
    std::array<struct sigaction, watched.size()> m_formerActions{};
    std::unique_ptr<QSocketNotifier> m_notifier;
};
