#pragma once
#include <QString>

// The service's word that it is stopping.
struct VeranoxShutdownResponse {
    QString status;

    bool operator==(const VeranoxShutdownResponse &) const = default;
};
