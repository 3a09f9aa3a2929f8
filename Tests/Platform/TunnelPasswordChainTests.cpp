// The way of an SSH password from a person to the bastion: the real store, client, keyring, service, ssh and SSH
// server. Each part has its own tests; these hold that they fit together.
#include "API/Client/VeranoxAPIClient.h"
#include "Core/VeranoxStore.h"
#include "Platform/Linux/Secrets/SecretServiceTunnelSecrets.h"
#include "Tests/Service/Support/ServiceProcess.h"
#include "Tests/Support/BusMonitor.h"
#include "Tests/Support/FakeRuntimeClient.h"
#include "Tests/Support/JobResult.h"
#include "Tests/Support/Keyring.h"
#include "Tests/Support/MainThreadHeartbeat.h"
#include "Tests/Support/QtPrinters.h"
#include "Tests/Support/RealWorld.h"
#include <QDBusVirtualObject>
#include <QTcpServer>
#include <csignal>

using namespace Qt::StringLiterals;
using veranox::test::ServiceProcess;
using veranox::test::TemporaryFolder;

namespace {

const QString password = u"correct horse ünï"_s;
const QString unknownPassword = u"The SSH password of this tunnel is not known; enter it in the tunnel's settings."_s;

// A port that nobody listens at, at the moment.
QString freeEndpoint()
{
    QTcpServer server;
    server.listen(QHostAddress::LocalHost);
    return u"127.0.0.1:"_s + QString::number(server.serverPort());
}

// An SSH server that lets in who knows the password.
class Bastion {
public:
    Bastion()
    {
        m_server.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        m_server.start(
            u"/usr/bin/python3"_s, {u"-W"_s, u"ignore"_s, QStringLiteral(PASSWORD_SERVER), u"0"_s, password});
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

// The desktop's question for the keyring's password, and a person who is not there to answer it.
class UnansweredPrompter final : public QDBusVirtualObject {
public:
    UnansweredPrompter()
    {
        bus.registerVirtualObject(path, this);
        bus.registerService(name);
    }
    ~UnansweredPrompter() override
    {
        bus.unregisterService(name);
        bus.unregisterObject(path);
    }

    QString introspect(const QString &) const override { return {}; }
    bool handleMessage(const QDBusMessage &message, const QDBusConnection &) override
    {
        questions += message.member() == u"BeginPrompting"_s ? 1 : 0;
        return true;
    }

    int questions = 0;

private:
    const QString name = u"org.gnome.keyring.SystemPrompter"_s;
    const QString path = u"/org/gnome/keyring/Prompter"_s;
    QDBusConnection bus = QDBusConnection::sessionBus();
};

} // namespace

class TunnelPasswordChainTests : public ::testing::Test {
protected:
    void SetUp() override
    {
        const int bastionPort = bastion.awaitPort();
        ASSERT_NE(bastionPort, 0);
        const QString lab = uR"({"version": 1,
            "tailnets": {"office": {"suffix": ".office.ts.net", "hosts": {"bastion": "127.0.0.1:%1"}}},
            "profiles": {"office": {"tailnet": "office", "config": {"Suffixes": [".office.ts.net"]}}}})"_s;
        home.write("lab.json", lab.arg(bastionPort).toStdString());
        startService(0);
        const QUrl url(u"http://127.0.0.1:%1"_s.arg(port));
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
            VeranoxClientIdentity{.appVersion = u"1"_s, .os = u"Linux"_s},
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
        draft.profile = u"office"_s;
        draft.target = u"db.internal:5432"_s;
        draft.useSSH = true;
        draft.bastion = u"bastion.office.ts.net"_s;
        draft.sshUser = u"deploy"_s;
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
    TemporaryFolder home;
    std::uint16_t port = 0;
    std::optional<ServiceProcess> service;
    Keyring keyring;
    RealWorld world;
    std::unique_ptr<VeranoxAPIClient> watcher;
    SecretServiceTunnelSecrets *secrets = nullptr; // owned by the store
    std::unique_ptr<VeranoxStore> store;
    jobs::JobScope jobs{world.queue}; // last
};

TEST_F(TunnelPasswordChainTests, APasswordFollowsItsTunnel)
{
    startKeyring();
    save(std::nullopt, u"db"_s, u" "_s + password + u"\n"_s);
    EXPECT_EQ(kept(u"db"_s), password);
    EXPECT_TRUE(hasSignedIn(u"db"_s));

    save(u"db"_s, u"base"_s, {});
    EXPECT_EQ(kept(u"db"_s), std::nullopt);
    EXPECT_EQ(kept(u"base"_s), password);
    EXPECT_TRUE(hasSignedIn(u"base"_s));

    EXPECT_EQ(resultOf(store->deleteTunnel(u"base"_s)), std::nullopt);
    EXPECT_EQ(kept(u"base"_s), std::nullopt);
    EXPECT_EQ(store->tunnels(), QList<VeranoxTunnel>());
    EXPECT_EQ(secrets->problem(), QString());
}

TEST_F(TunnelPasswordChainTests, AServiceThatWasRestartedGetsItWithTheNextRefresh)
{
    startKeyring();
    save(std::nullopt, u"db"_s, password);
    ASSERT_TRUE(hasSignedIn(u"db"_s));
    restartService();
    EXPECT_TRUE(lacksPassword(u"db"_s));
    refresh();
    EXPECT_TRUE(hasSignedIn(u"db"_s));
}

TEST_F(TunnelPasswordChainTests, ARestartOfTheTunnelBringsItToo)
{
    startKeyring();
    save(std::nullopt, u"db"_s, password);
    ASSERT_TRUE(hasSignedIn(u"db"_s));
    restartService();
    EXPECT_TRUE(lacksPassword(u"db"_s));
    EXPECT_TRUE(resultOf(store->restartTunnel(u"db"_s)).isSuccess());
    EXPECT_TRUE(hasSignedIn(u"db"_s));
    EXPECT_EQ(store->lastActionMessage(), QString());
}

TEST_F(TunnelPasswordChainTests, ALockedKeyringHoldsNothingUpAndIsAskedOnce)
{
    constexpr qint64 longestPause = 50; // milliseconds
    startKeyring();
    save(std::nullopt, u"db"_s, password);
    ASSERT_TRUE(hasSignedIn(u"db"_s));
    restartService();
    Keyring::lock();
    const UnansweredPrompter prompter;
    BusMonitor monitor(u"Unlock"_s);
    ASSERT_TRUE(monitor.isListening());

    MainThreadHeartbeat heartbeat;
    for (int round = 1; round <= 3; ++round) {
        const jobs::Job<> refreshing = jobs.start(store->refresh());
        EXPECT_TRUE(heartbeat.turnLoopUntil([&] { return refreshing.finished(); })) << round;
        EXPECT_TRUE(heartbeat.turnLoopUntil([&] { return prompter.questions == 1; })) << round;
        EXPECT_TRUE(store->serviceState().isOnline());
    }
    EXPECT_EQ(monitor.calls("Unlock"), 1);
    EXPECT_TRUE(lacksPassword(u"db"_s));

    const auto restarting = jobs.start(store->restartTunnel(u"db"_s));
    EXPECT_TRUE(heartbeat.turnLoopUntil([&] { return monitor.calls("Unlock") == 2; })) << "for a person it asks again";
    const jobs::Job<> refreshing = jobs.start(store->refresh());
    EXPECT_TRUE(heartbeat.turnLoopUntil([&] { return refreshing.finished(); }));
    EXPECT_FALSE(restarting.finished()) << "it waits for an answer";
    EXPECT_LT(heartbeat.longestPause(), longestPause);

    ASSERT_TRUE(keyring.replace()) << "by one that is not locked";
    refresh();
    EXPECT_TRUE(hasSignedIn(u"db"_s));
    EXPECT_EQ(kept(u"db"_s), password);
}

TEST_F(TunnelPasswordChainTests, WithoutAKeyringATunnelWorksUntilTheServiceRestarts)
{
    save(std::nullopt, u"db"_s, password);
    EXPECT_TRUE(hasSignedIn(u"db"_s));
    EXPECT_EQ(secrets->problem(),
        u"This desktop has no keyring, so Veranox cannot keep SSH passwords. Install and start one, for example GNOME "
        "Keyring or KWallet, or type the password again after each start."_s);
    restartService();
    refresh();
    EXPECT_TRUE(store->serviceState().isOnline());
    EXPECT_EQ(store->profiles().size(), 1);
    EXPECT_EQ(store->tunnels().size(), 1);
    EXPECT_TRUE(lacksPassword(u"db"_s));

    save(u"db"_s, u"db"_s, password);
    EXPECT_TRUE(hasSignedIn(u"db"_s));
    EXPECT_TRUE(resultOf(store->restartTunnel(u"db"_s)).isSuccess());
    EXPECT_TRUE(hasSignedIn(u"db"_s));
    EXPECT_EQ(store->lastActionMessage(), QString());
    EXPECT_EQ(resultOf(store->deleteTunnel(u"db"_s)), std::nullopt);
    EXPECT_EQ(store->tunnels(), QList<VeranoxTunnel>());
}
