#pragma once
#include <QString>
#include <QTcpServer>

// A port that nobody listens at, at the moment.
inline QString freeEndpoint()
{
    QTcpServer server;
    server.listen(QHostAddress::LocalHost);
    return QStringLiteral("127.0.0.1:") + QString::number(server.serverPort());
}
