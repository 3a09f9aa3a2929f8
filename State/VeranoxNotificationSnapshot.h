#pragma once
#include "API/Records/VeranoxProfile.h"
#include "API/Records/VeranoxPublication.h"
#include "API/Records/VeranoxTunnel.h"
#include "API/Values/ServiceState.h"
#include <QList>

// What failure notifications are decided from: two of these, one after the other.
struct VeranoxNotificationSnapshot {
    ServiceState service;
    bool isBusy = false; // the application itself is changing things, so that a failure is no news
    QList<VeranoxProfile> profiles;
    QList<VeranoxTunnel> tunnels;
    QList<VeranoxPublication> publications;

    bool operator==(const VeranoxNotificationSnapshot &) const = default;
};

// Who is told after each write of the state that failures show in.
class VeranoxFailureObserving {
public:
    virtual ~VeranoxFailureObserving() = default;

    // Main thread, right after the write. Equal snapshots may come one after the other.
    virtual void observe(const VeranoxNotificationSnapshot &snapshot) = 0;
};
