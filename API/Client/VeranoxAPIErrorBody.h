#pragma once
#include <QString>

// The body of an answer that is not 2xx: {"error": text}.
struct VeranoxAPIErrorBody {
    QString error;

    bool operator==(const VeranoxAPIErrorBody &) const = default;
};
