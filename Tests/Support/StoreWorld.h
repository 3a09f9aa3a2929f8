// A store over a scripted service, in virtual time.
#pragma once
#include "Core/VeranoxStore.h"
#include "Tests/Support/ChangeCount.h"
#include "Tests/Support/FakeAPIClient.h"
#include "Tests/Support/FakeRuntimeClient.h"
#include "Tests/Support/FakeTunnelSecrets.h"
#include "Tests/Support/QtPrinters.h"
#include "Tests/Support/Records.h"
#include "Tests/Support/VirtualTime.h"
#include <QSignalSpy>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

class StoreWorld : public ::testing::Test, protected Records {
protected:
    StoreWorld() { rebuild(command()); }

    // A fresh store, service and runtime client.
    void rebuild(std::optional<VeranoxCommand> cliCommand)
    {
        auto client = std::make_unique<FakeAPIClient>(world.queue);
        auto processes = std::make_unique<FakeRuntimeClient>();
        auto observer = std::make_unique<RecordingObserver>();
        auto keyring = std::make_unique<FakeTunnelSecrets>();
        service = client.get();
        runtime = processes.get();
        observed = observer.get();
        secrets = keyring.get();
        service->config.answer({.router = VeranoxRouterConfig::defaults()});
        service->editableConfig.answer(VeranoxEditableConfig::emptyForFirstProfile());
        service->profiles.answer({profile(QStringLiteral("home"), true, QStringLiteral("Running"))});
        store = std::make_unique<VeranoxStore>(world.queue,
            VeranoxStore::Collaborators{.apiClient = std::move(client),
                .runtimeClient = std::move(processes),
                .cliCommand = std::move(cliCommand),
                .diagnostics = VeranoxDiagnosticSession::make(),
                .failureNotifier = std::move(observer),
                .tunnelSecrets = std::move(keyring)});
    }

    static VeranoxCommand command()
    {
        return {.executableURL = QUrl::fromLocalFile(QStringLiteral("/opt/veranox/veranox")), .leadingArguments = {}};
    }

    void refresh()
    {
        store->requestRefresh();
        world.run();
    }

    QStringList log() const
    {
        QStringList lines;
        for (const VeranoxRuntimeLogEntry &entry : store->runtimeLog())
            lines.append(entry.message);
        return lines;
    }

    jobs::World world;
    FakeAPIClient *service = nullptr; // owned by the store
    FakeRuntimeClient *runtime = nullptr; // likewise
    RecordingObserver *observed = nullptr; // likewise
    FakeTunnelSecrets *secrets = nullptr; // likewise
    std::unique_ptr<VeranoxStore> store;
};
