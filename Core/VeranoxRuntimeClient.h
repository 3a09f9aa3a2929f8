#pragma once
#include "API/Client/VeranoxDiagnosticSession.h"
#include "Core/VeranoxRuntimeClientProtocol.h"
#include "Core/VeranoxStaleServices.h"
#include <memory>

// Runs the `veranox` executable as a child process.
//
// The child is not tied to the life of this application: when this one is killed, the service keeps its connections up,
// and the next start attaches to it or, if it hangs, clears it away.
class VeranoxRuntimeClient final : public VeranoxRuntimeClientProtocol {
public:
    // `guiListen` is the address that the service is told to listen at.
    VeranoxRuntimeClient(jobs::MainQueue &queue, QString guiListen, VeranoxDiagnosticSession diagnostics);
    ~VeranoxRuntimeClient() override;

    void startGUI(const VeranoxCommand &command) override;
    jobs::Async<> terminateStaleGUIService(VeranoxCommand command) override;
    jobs::Async<> shutdown() override;
    void terminateImmediately() override;
    std::optional<VeranoxManagedProcessState> guiProcess() const override;
    std::optional<VeranoxManagedProcessState> routerProcess() const override;

    // The command line of the service, as the system's tools show it.
    QString staleGUICommandLine(const VeranoxCommand &command) const;

private:
    enum class ManagedProcess { gui, router };
    struct Managed;
    using Slot = std::shared_ptr<Managed>; // empty, or a process that runs or has ended

    QStringList guiArguments(const VeranoxCommand &command) const;
    Slot launch(const VeranoxCommand &command, ManagedProcess which, const QStringList &arguments);
    jobs::Async<> follow(Slot managed);
    jobs::Async<> reportOutput(Slot managed);
    void reportExit(const Managed &managed);
    void report(const Managed &managed, const QString &text) const;

    jobs::Async<> performShutdown();
    jobs::Async<> stop(Slot *slot);
    void forget(Slot *slot);
    static jobs::Async<bool> waitForExit(Slot managed, jobs::Clock::Duration timeout);
    static std::optional<VeranoxManagedProcessState> stateOf(const Slot &slot);

    QString m_guiListen;
    VeranoxDiagnosticSession m_diagnostics;
    VeranoxStaleServices m_staleServices;
    Slot m_guiProcess;
    Slot m_routerProcess; // nothing is launched into it yet; whatever stands there is stopped like the other
    jobs::JobScope m_jobs; // last
};
