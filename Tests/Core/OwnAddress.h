#pragma once
#include <QString>
#include <unistd.h>

// The address that a test's services are told to listen at; nothing listens there. Another for each process of tests:
// what one of them takes for a service that was left over must not be another's.
inline QString ownAddress()
{
    constexpr int first = 20000;
    constexpr int count = 20000;
    return QStringLiteral("127.0.0.1:%1").arg(first + ::getpid() % count);
}
