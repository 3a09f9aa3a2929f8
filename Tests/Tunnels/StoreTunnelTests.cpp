// What the store does with tunnels and the service.
#include "Tests/Support/JobResult.h"
#include "Tests/Support/StoreWorld.h"
#include "Tests/Tunnels/TunnelDrafts.h"

using namespace Qt::StringLiterals;
using tunnel_drafts::draftNamed;

namespace {

using Sentence = std::optional<QString>;

VeranoxTunnel passwordTunnel(const QString &name)
{
    return {.name = name, .mode = u"ssh"_s, .sshAuth = u"password"_s};
}

} // namespace

class StoreTunnelTests : public StoreWorld {
protected:
    static QList<VeranoxTunnel> list(const QString &name) { return {tunnel(name, u"listening"_s)}; }

    Sentence save(const VeranoxTunnelDraft &draft) { return resultOf(world, store->saveTunnelDraft(draft)); }
};

TEST_F(StoreTunnelTests, GroupsTunnelsByProfileWithWorkFirst)
{
    const auto titled = [](const QString &name, const QString &title) {
        VeranoxProfile record = profile(name, true, u"Running"_s);
        record.displayName = title;
        return record;
    };
    const auto of = [](const QString &owner, const QString &name) {
        VeranoxTunnel record = tunnel(name, u"listening"_s);
        record.profile = owner;
        return record;
    };
    service->profiles.answer({titled(u"a"_s, u"alpha"_s), titled(u"b"_s, u"Beta"_s), titled(u"z"_s, u"Zum WORK"_s),
        titled(u"homework"_s, u"Ypsilon"_s), titled(u"empty"_s, u"Empty"_s), titled(u"twin2"_s, u"Twin"_s),
        titled(u"twin1"_s, u"TWIN"_s)});
    service->tunnels.answer({of(u"b"_s, u"3"_s), of(u"a"_s, u"1"_s), of(u"z"_s, u"2"_s), of(u"gone"_s, u"x"_s),
        of(u"twin1"_s, u"6"_s), of(u"twin2"_s, u"5"_s), of(u"homework"_s, u"4"_s), of(u"a"_s, u"0"_s)});
    refresh();
    QStringList groups;
    for (const auto &[owner, tunnels] : store->tunnelsByProfile())
        for (const VeranoxTunnel &each : tunnels)
            groups.append(owner.name + u' ' + each.name);
    EXPECT_EQ(
        groups, QStringList({u"homework 4"_s, u"z 2"_s, u"a 1"_s, u"a 0"_s, u"b 3"_s, u"twin2 5"_s, u"twin1 6"_s}))
        << "equal titles stay as they came";
}

TEST_F(StoreTunnelTests, ARefreshThatBeganBeforeASaveDoesNotUndoIt)
{
    service->tunnels.answer(list(u"old"_s));
    service->tunnels.hold();
    refresh();
    service->tunnelSave.answer(list(u"new"_s));
    EXPECT_EQ(save(draftNamed(u"new"_s)), std::nullopt);
    service->tunnels.release();
    world.run();
    EXPECT_EQ(store->tunnels(), list(u"new"_s));
    service->tunnels.answer(list(u"newest"_s));
    refresh();
    EXPECT_EQ(store->tunnels(), list(u"newest"_s)) << "one that began after it applies";
}

TEST_F(StoreTunnelTests, TheStoreMayDieWhileItsOperationsWait)
{
    service->tunnels.answer({passwordTunnel(u"db"_s)});
    secrets->delay = std::chrono::seconds(10);
    refresh();
    ASSERT_TRUE(store->isRefreshing()); // waits for the keyring
    const int rings = world.clock.rings;
    const ChangeCount refreshing([this] { return store && store->isRefreshing(); });
    store.reset();
    EXPECT_EQ(refreshing.count(), 1); // the flag came down while it could still tell
    world.run(std::chrono::minutes(1));
    EXPECT_EQ(world.clock.rings, rings) << "something still waited for its time";
}
