// A runtime client whose service starts, ends and hangs as the test says.
#pragma once
#include "Core/VeranoxRuntimeClientProtocol.h"
#include <QStringList>
#include <exception>

class FakeRuntimeClient : public VeranoxRuntimeClientProtocol {
public:
    void startGUI(const VeranoxCommand &command) override
    {
        calls.append(QStringLiteral("startGUI"));
        commands.append(command);
        if (launchFailure)
            std::rethrow_exception(launchFailure);
        gui = {.isRunning = true, .terminationStatus = 0};
        onOutput(QStringLiteral("[GUI] started"));
    }
    jobs::Async<> terminateStaleGUIService(VeranoxCommand command) override
    {
        calls.append(QStringLiteral("terminateStaleGUIService"));
        commands.append(std::move(command));
        co_await jobs::sleep(staleTime);
    }
    jobs::Async<> shutdown() override
    {
        calls.append(QStringLiteral("shutdown"));
        co_await jobs::sleep(stopTime);
        gui.reset();
    }
    void terminateImmediately() override
    {
        calls.append(QStringLiteral("terminateImmediately"));
        gui.reset();
    }
    std::optional<VeranoxManagedProcessState> guiProcess() const override { return gui; }
    std::optional<VeranoxManagedProcessState> routerProcess() const override { return router; }

    // The launched service ends although nobody stopped it.
    void crash(std::int32_t status)
    {
        gui = {.isRunning = false, .terminationStatus = status};
        onOutput(QStringLiteral("[GUI] exited with status %1").arg(status));
        onGUIServiceExit(status);
    }

    template <class E> void failLaunch(E error) { launchFailure = std::make_exception_ptr(std::move(error)); }

    QStringList calls;
    QList<VeranoxCommand> commands;
    std::exception_ptr launchFailure;
    jobs::Clock::Duration staleTime{};
    jobs::Clock::Duration stopTime{};
    std::optional<VeranoxManagedProcessState> gui;
    std::optional<VeranoxManagedProcessState> router;
};
