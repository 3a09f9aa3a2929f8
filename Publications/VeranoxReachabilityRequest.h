#pragma once
#include "API/Records/VeranoxPublication.h"
#include <optional>

// The wish to see how a publication can be made reachable.
struct VeranoxReachabilityRequest {
    QString id; // the publication's name
    QString title; // the publication's label
    VeranoxPublicationPolicyHint hint;

    // The request for that publication; absent while the service gives no hint for it.
    static std::optional<VeranoxReachabilityRequest> of(const VeranoxPublication &publication);

    bool operator==(const VeranoxReachabilityRequest &) const = default;
};

Q_DECLARE_METATYPE(VeranoxReachabilityRequest)
