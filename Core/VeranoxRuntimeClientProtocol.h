#pragma once
#include "Base/Jobs/Jobs.h"
#include "Core/VeranoxCommand.h"
#include <cstdint>
#include <functional>
#include <optional>

// A process that this application has launched, at the moment of the question.
struct VeranoxManagedProcessState {
    bool isRunning = false;
    std::int32_t terminationStatus = 0; // once it does not run; 128 and the signal's number if a signal ended it

    bool operator==(const VeranoxManagedProcessState &) const = default;
};

// The local service as a child process of this application. Main thread only.
class VeranoxRuntimeClientProtocol {
public:
    VeranoxRuntimeClientProtocol() = default;
    VeranoxRuntimeClientProtocol(const VeranoxRuntimeClientProtocol &) = delete;
    VeranoxRuntimeClientProtocol &operator=(const VeranoxRuntimeClientProtocol &) = delete;
    virtual ~VeranoxRuntimeClientProtocol() = default;

    // Launches the service, unless the one launched before still runs. Throws LocalizedError when the system refuses.
    virtual void startGUI(const VeranoxCommand &command) = 0;

    // Ends the service that an earlier run left behind, if there is one: its process belongs to this user and has
    // exactly the command line that startGUI() would give it. Never fails. From within a job.
    virtual jobs::Async<> terminateStaleGUIService(VeranoxCommand command) = 0;

    // Stops what this application launched, and ends when it is gone or given up on: after 2 seconds per process.
    // A cancel of the calling job does not shorten this. From within a job.
    virtual jobs::Async<> shutdown() = 0;

    // Asks what this application launched to stop, and forgets it.
    virtual void terminateImmediately() = 0;

    // Absent when nothing was launched, or what was is stopped.
    virtual std::optional<VeranoxManagedProcessState> guiProcess() const = 0;
    virtual std::optional<VeranoxManagedProcessState> routerProcess() const = 0;

    // Called with each line that a process says, and with its start and end, led by "[GUI] " or "[Router] ".
    std::function<void(const QString &line)> onOutput;

    // Called with the status of a service that ended although nobody stopped it, after its last line.
    std::function<void(std::int32_t status)> onGUIServiceExit;
};
