// Records as the service reports them, and who is told of failures in them.
#pragma once
#include "API/Client/VeranoxAPIFailure.h"
#include "State/VeranoxNotificationSnapshot.h"

class RecordingObserver final : public VeranoxFailureObserving {
public:
    void observe(const VeranoxNotificationSnapshot &snapshot) override { snapshots.append(snapshot); }
    QList<VeranoxNotificationSnapshot> snapshots;
};

struct Records {
    static VeranoxProfile profile(const QString &name, bool ok, const QString &backendState)
    {
        VeranoxProfile record;
        record.name = name;
        record.displayName = name;
        record.status.ok = ok;
        record.status.backendState = backendState;
        return record;
    }

    static VeranoxTunnel tunnel(
        const QString &name, const QString &state, const QString &lastError = {}, bool disabled = false)
    {
        VeranoxTunnel record;
        record.name = name;
        record.state = state;
        record.lastError = lastError;
        record.disabled = disabled;
        return record;
    }

    static VeranoxPublication publication(
        const QString &name, const QString &state, const QString &lastError = {}, bool disabled = false)
    {
        VeranoxPublication record;
        record.name = name;
        record.state = state;
        record.lastError = lastError;
        record.disabled = disabled;
        return record;
    }

    static VeranoxAPIFailure unavailable() { return VeranoxAPIFailure::unavailable(); }
};
