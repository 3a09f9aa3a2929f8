// The way of an SSH password from a person to the bastion: the real store, client, keyring, service, ssh and SSH
// server. Each part has its own tests; these hold that they fit together.
#pragma once
#include "API/Client/VeranoxAPIClient.h"
#include "Core/VeranoxStore.h"
#include "Platform/Linux/Secrets/SecretServiceTunnelSecrets.h"
#include "Tests/Service/Support/ServiceProcess.h"
#include "Tests/Support/FakeRuntimeClient.h"
#include "Tests/Support/FreeEndpoint.h"
#include "Tests/Support/JobResult.h"
#include "Tests/Support/Keyring.h"
#include "Tests/Support/QtPrinters.h"
#include "Tests/Support/RealWorld.h"
#include <csignal>
#include <gtest/gtest.h>

inline const QString password = QStringLiteral("correct horse ünï");
inline const QString unknownPassword =
    QStringLiteral("The SSH password of this tunnel is not known; enter it in the tunnel's settings.");

// An SSH server that lets in who knows the password.
class Bastion {
public:
    Bastion()
    {
        m_server.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        m_server.start(QStringLiteral("/usr/bin/python3"),
            {QStringLiteral("-W"), QStringLiteral("ignore"), QStringLiteral(PASSWORD_SERVER), QStringLiteral("0"),
                password});
    }
    ~Bastion()
    {
        m_server.kill();
        m_server.waitForFinished();
    }

    // Where it listens, as soon as it does; 0 when it ends without.
    int awaitPort() { return m_server.waitForReadyRead() ? m_server.readAll().trimmed().toInt() : 0; }

private:
    QProcess m_server;
};

class TunnelPasswordChainTests : public ::testing::Test {
protected:
    void SetUp() override
    {
        const int bastionPort = bastion.awaitPort();
        ASSERT_NE(bastionPort, 0);
        const QString lab = QStringLiteral(R"({"version": 1,
            "tailnets": {"office": {"suffix": ".office.ts.net", "hosts": {"bastion": "127.0.0.1:%1"}}},
            "profiles": {"office": {"tailnet": "office", "config": {"Suffixes": [".office.ts.net"]}}}})");
        home.write("lab.json", lab.arg(bastionPort).toStdString());
        startService(0);
        const QUrl url(QStringLiteral("http://127.0.0.1:%1").arg(port));
        watcher = makeClient(url);
        auto keptSecrets = std::make_unique<SecretServiceTunnelSecrets>(world.queue);
        secrets = keptSecrets.get();
        store = std::make_unique<VeranoxStore>(world.queue,
            VeranoxStore::Collaborators{.apiClient = makeClient(url),
                .runtimeClient = std::make_unique<FakeRuntimeClient>(),
                .cliCommand = {},
                .diagnostics = VeranoxDiagnosticSession::make(),
                .failureNotifier = nullptr,
                .tunnelSecrets = std::move(keptSecrets)});
    }

    std::unique_ptr<VeranoxAPIClient> makeClient(const QUrl &url)
    {
        return std::make_unique<VeranoxAPIClient>(world.queue, url, VeranoxDiagnosticSession::make(),
            VeranoxClientIdentity{.appVersion = QStringLiteral("1"), .os = QStringLiteral("Linux")},
            QString::fromStdString(home / ".local/share/Veranox/control.token"));
    }

    void startService(std::uint16_t listenPort)
    {
        service.emplace(home.path(),
            std::vector<std::string>{"gui", "serve", "--listen", "127.0.0.1:" + std::to_string(listenPort), "--lab",
                (home / "lab.json").string()},
            std::map<std::string, std::string>{{"PATH", qgetenv("PATH").toStdString()}});
        port = service->awaitPort();
        ASSERT_NE(port, 0);
    }

    void restartService()
    {
        service->signal(SIGTERM);
        ASSERT_EQ(service->awaitEnd(), 0);
        startService(port);
    }

    void startKeyring()
    {
        ASSERT_TRUE(keyring.start());
        QTimer poll;
        poll.start(std::chrono::milliseconds(5));
        ASSERT_TRUE(world.runUntil([] { return Keyring::isThere(); }));
    }

    template <class T> T resultOf(jobs::Async<T> operation)
    {
        std::optional<T> result;
        std::exception_ptr failure;
        jobs::JobScope scope(world.queue);
        scope.start(job_result::keep(std::move(operation), &result, &failure));
        EXPECT_TRUE(world.runUntil([&] { return result || failure; })) << "it still waits";
        if (failure)
            std::rethrow_exception(failure);
        return std::move(result).value_or(T());
    }
    void finish(jobs::Async<> operation) { resultOf(job_result::ended(std::move(operation))); }
    void refresh() { finish(store->refresh()); }

    void save(const std::optional<QString> &originalName, const QString &name, const QString &typed)
    {
        VeranoxTunnelDraft draft;
        draft.originalName = originalName;
        draft.name = name;
        draft.profile = QStringLiteral("office");
        draft.target = QStringLiteral("db.internal:5432");
        draft.useSSH = true;
        draft.bastion = QStringLiteral("bastion.office.ts.net");
        draft.sshUser = QStringLiteral("deploy");
        draft.sshAuth = VeranoxTunnelSSHAuth::password;
        draft.password = typed;
        draft.listen = listen;
        draft.hasStoredPassword = typed.isEmpty();
        EXPECT_EQ(resultOf(store->saveTunnelDraft(draft)), std::nullopt);
    }

    // What the keyring has, seen by another than the store's.
    std::optional<QString> kept(const QString &name)
    {
        SecretServiceTunnelSecrets other(world.queue);
        return resultOf(other.password(name, VeranoxTunnelSecretStoring::Unlocking::ask));
    }

    // Whether the service comes to say this of the tunnel. It is asked by another client: the store tells it nothing.
    template <class Condition> testing::AssertionResult comesToBe(const QString &name, Condition condition)
    {
        VeranoxTunnel last;
        const QDeadlineTimer patience(std::chrono::seconds(30));
        while (!patience.hasExpired()) {
            for (const VeranoxTunnel &tunnel : resultOf(watcher->fetchTunnels()).value_or(QList<VeranoxTunnel>()))
                if (tunnel.name == name)
                    last = tunnel;
            if (condition(last))
                return testing::AssertionSuccess();
        }
        return testing::AssertionFailure()
            << last.name.toStdString() << " is " << last.state.toStdString() << ": " << last.lastError.toStdString();
    }
    // Only who has the password comes past the bastion.
    testing::AssertionResult hasSignedIn(const QString &name)
    {
        return comesToBe(name, [](const VeranoxTunnel &tunnel) { return tunnel.state == u"listening"; });
    }
    testing::AssertionResult lacksPassword(const QString &name)
    {
        return comesToBe(name, [](const VeranoxTunnel &tunnel) { return tunnel.lastError == unknownPassword; });
    }

    const QString listen = freeEndpoint();
    Bastion bastion;
    veranox::test::TemporaryFolder home;
    std::uint16_t port = 0;
    std::optional<veranox::test::ServiceProcess> service;
    Keyring keyring;
    RealWorld world;
    std::unique_ptr<VeranoxAPIClient> watcher;
    SecretServiceTunnelSecrets *secrets = nullptr; // owned by the store
    std::unique_ptr<VeranoxStore> store;
    jobs::JobScope jobs{world.queue}; // last
};
