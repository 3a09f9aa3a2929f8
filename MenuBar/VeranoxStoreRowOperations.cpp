#include "MenuBar/VeranoxStoreRowOperations.h"
#include "Core/VeranoxStore.h"

namespace {

// What a row says of the outcome: nothing after a success, nor when the operation was cancelled.
jobs::Async<QString> failureOf(jobs::Async<VeranoxActionOutcome> operation)
{
    const VeranoxActionOutcome outcome = co_await std::move(operation);
    co_return outcome.isFailure() ? outcome.message : QString();
}

} // namespace

VeranoxRowOperations tunnelOperations(VeranoxStore &store)
{
    return {
        .setEnabled = [&store](const QString &name,
                          bool enabled) { return failureOf(store.setTunnelEnabled(name, enabled)); },
        .restart = [&store](const QString &name) { return failureOf(store.restartTunnel(name)); },
    };
}

VeranoxRowOperations publicationOperations(VeranoxStore &store)
{
    return {
        .setEnabled = [&store](const QString &name,
                          bool enabled) { return failureOf(store.setPublicationEnabled(name, enabled)); },
        .restart = [&store](const QString &name) { return failureOf(store.restartPublication(name)); },
    };
}
