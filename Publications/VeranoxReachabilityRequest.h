#pragma once
#include "API/Records/VeranoxPublication.h"
#include <optional>

// The wish to see how a publication can be made reachable.
struct VeranoxReachabilityRequest {
    Q_GADGET
    Q_PROPERTY(QString id MEMBER id)
    Q_PROPERTY(QString title MEMBER title)
    Q_PROPERTY(VeranoxPublicationPolicyHint hint MEMBER hint)

public:
    QString id; // the publication's name
    QString title; // the publication's label
    VeranoxPublicationPolicyHint hint;

    // The request for that publication; absent while the service gives no hint for it.
    static std::optional<VeranoxReachabilityRequest> of(const VeranoxPublication &publication);

    bool operator==(const VeranoxReachabilityRequest &) const = default;
};

Q_DECLARE_METATYPE(VeranoxReachabilityRequest)
