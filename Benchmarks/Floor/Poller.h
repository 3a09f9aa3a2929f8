#pragma once
#include <QNetworkAccessManager>
#include <QTimer>

// Reads six answers of the local service every 15 seconds, in the plainest way, and drops them. Main thread only.
class Poller : public QObject {
    Q_OBJECT

public:
    Poller();

private:
    void poll();
    void read(const QUrl &url);

    QNetworkAccessManager m_network;
    QTimer m_timer;
};
