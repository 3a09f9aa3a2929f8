#include "Benchmarks/Floor/Poller.h"
#include <QNetworkReply>
#include <array>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

const std::array paths{u"/api/health"_s, u"/api/profiles"_s, u"/api/config"_s, u"/api/environment"_s, u"/api/tunnels"_s,
    u"/api/publications"_s};

} // namespace

Poller::Poller()
{
    connect(&m_timer, &QTimer::timeout, this, &Poller::poll);
    m_timer.start(15s);
    poll();
}

void Poller::poll()
{
    for (const QString &path : paths)
        read(QUrl(u"http://127.0.0.1:43200"_s + path));
}

void Poller::read(const QUrl &url)
{
    QNetworkReply *reply = m_network.get(QNetworkRequest(url));
    connect(reply, &QNetworkReply::finished, this, [reply] {
        if (reply->error() != QNetworkReply::NoError)
            qFatal("%ls", qUtf16Printable(reply->errorString()));
        reply->readAll();
        reply->deleteLater();
    });
}
