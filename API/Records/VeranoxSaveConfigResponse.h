#pragma once
#include <QString>

// The service's word that it has kept a configuration.
struct VeranoxSaveConfigResponse {
    QString status;
    QString path; // of the file

    bool operator==(const VeranoxSaveConfigResponse &) const = default;
};
