#include "Tests/Platform/TunnelPasswordChain.h"
#include "Tests/Support/BusMonitor.h"
#include "Tests/Support/MainThreadHeartbeat.h"
#include <QDBusVirtualObject>

using namespace Qt::StringLiterals;

namespace {

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
