#include "MenuBar/Popover/VeranoxMenuView.h"
#include "Tests/Support/StoreWorld.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

class MenuRows : public StoreWorld {
protected:
    MenuRows() { look({}); }

    void look(const VeranoxRowOperations &operations)
    {
        view = std::make_unique<VeranoxMenuView>(world.queue, *store,
            VeranoxMenuActions{.dismissMenu = [] {},
                .requestQuit = [] {},
                .copyText = [this](const QString &text) { copied.append(text); },
                .openAddress = [](const QUrl &) {},
                .tunnels = operations,
                .publications = operations});
    }

    VeranoxMenuRow tunnelRow(int place = 0)
    {
        return view->tunnels()->rows()->index(place, 0).data(Qt::UserRole).value<VeranoxMenuRow>();
    }

    VeranoxMenuRow publicationRow(int place = 0)
    {
        return view->publications()->rows()->index(place, 0).data(Qt::UserRole).value<VeranoxMenuRow>();
    }

    void show(const VeranoxTunnel &record)
    {
        service->tunnels.answer({record});
        refresh();
    }

    void show(const VeranoxPublication &record)
    {
        service->publications.answer({record});
        refresh();
    }

    static jobs::Async<QString> fail(QString sentence)
    {
        co_await jobs::sleep(1s);
        co_return sentence;
    }

    QStringList copied;
    std::unique_ptr<VeranoxMenuView> view;
};

} // namespace

TEST_F(MenuRows, sixTunnelsAreListedAndSevenAreSummedUp)
{
    EXPECT_FALSE(view->tunnels()->visible());
    QList<VeranoxTunnel> tunnels;
    for (int number = 0; number < 6; ++number)
        tunnels.append(tunnel(QString::number(number), u"listening"_s, {}, number == 0));
    service->tunnels.answer(tunnels);
    refresh();
    EXPECT_TRUE(view->tunnels()->visible());
    EXPECT_FALSE(view->tunnels()->isCompact());
    EXPECT_EQ(view->tunnels()->rows()->rowCount(), 6);
    tunnels.append(tunnel(u"6"_s, u"error"_s, u"refused"_s));
    service->tunnels.answer(tunnels);
    refresh();
    EXPECT_TRUE(view->tunnels()->isCompact());
    EXPECT_EQ(view->tunnels()->rows()->rowCount(), 0);
    EXPECT_EQ(view->tunnels()->countText(), u"7 tunnels"_s);
    EXPECT_EQ(view->tunnels()->statusSummary(), u"6 enabled · 1 off"_s);
    EXPECT_EQ(view->tunnels()->attentionSummary(), u"1 needs attention"_s);
}

TEST_F(MenuRows, sevenPublicationsAreSummedUp)
{
    QList<VeranoxPublication> publications;
    for (int number = 0; number < 7; ++number)
        publications.append(publication(QString::number(number), u"listening"_s));
    service->publications.answer(publications);
    refresh();
    EXPECT_TRUE(view->publications()->isCompact());
    EXPECT_EQ(view->publications()->countText(), u"7 publications"_s);
    EXPECT_EQ(view->publications()->attentionSummary(), QString());
}

TEST_F(MenuRows, aTunnelShowsItsWayAndItsProfile)
{
    VeranoxTunnel record = tunnel(u"db"_s, u"listening"_s);
    record.profile = u"home"_s;
    record.target = u"db.example:5432"_s;
    record.sshBastion = u"bastion:22"_s;
    record.mode = u"native"_s;
    record.listen = u"127.0.0.1:15432"_s;
    show(record);
    EXPECT_EQ(tunnelRow().title, u"db"_s); // without a title its name
    EXPECT_EQ(tunnelRow().target, u"db.example:5432"_s);
    EXPECT_EQ(tunnelRow().accent, store->profiles().constFirst().profileAccentColor());
    EXPECT_EQ(tunnelRow().address, u"127.0.0.1:15432"_s);
    record.mode = u"ssh"_s;
    record.displayName = u"Orders"_s;
    record.profile = u"gone"_s;
    show(record);
    EXPECT_EQ(tunnelRow().title, u"Orders"_s);
    EXPECT_EQ(tunnelRow().target, u"db.example:5432 via bastion:22"_s);
    EXPECT_EQ(tunnelRow().accent, QString());
}

TEST_F(MenuRows, aTunnelSaysItsStateAndOffersARetryWhenItHasTrouble)
{
    struct {
        VeranoxTunnel record;
        VeranoxTone::Tone tone;
        QString text;
        bool canRetry;
        QString toggleHelp;
    } const cases[] = {
        {tunnel(u"a"_s, u"listening"_s), VeranoxTone::Green, u"Listening"_s, false, u"Stop this tunnel"_s},
        {tunnel(u"a"_s, u"listening"_s, u"late"_s), VeranoxTone::Orange, u"late"_s, true, u"Stop this tunnel"_s},
        {tunnel(u"a"_s, u"error"_s), VeranoxTone::Red, u"Error"_s, true, u"Stop this tunnel"_s},
        {tunnel(u"a"_s, u"starting"_s), VeranoxTone::Gray, u"Starting — connecting through the profile…"_s, false,
            u"Stop this tunnel"_s},
        {tunnel(u"a"_s, u"blocked"_s), VeranoxTone::Gray, u"Blocked"_s, false, u"Stop this tunnel"_s},
        {tunnel(u"a"_s, u"error"_s, u"x"_s, true), VeranoxTone::FaintGray, u"Stopped"_s, false, u"Start this tunnel"_s},
    };
    for (const auto &row : cases) {
        show(row.record);
        EXPECT_EQ(tunnelRow().tone, int(row.tone)) << qUtf8Printable(row.text);
        EXPECT_EQ(tunnelRow().stateText, row.text);
        EXPECT_EQ(tunnelRow().canRetry, row.canRetry) << qUtf8Printable(row.text);
        EXPECT_EQ(tunnelRow().toggleHelp, row.toggleHelp);
    }
}

TEST_F(MenuRows, whatWentWrongIsAToolTipWhateverTheState)
{
    const QString starting = u"Starting — connecting through the profile…"_s;
    struct {
        VeranoxTunnel record;
        QString text;
        QString help;
    } const cases[] = {
        {tunnel(u"a"_s, u"starting"_s), starting, starting},
        {tunnel(u"a"_s, u"starting"_s, u"refused"_s), starting, u"refused"_s},
        {tunnel(u"a"_s, u"blocked"_s, u"refused"_s), u"Blocked"_s, u"refused"_s},
        {tunnel(u"a"_s, u"listening"_s, u"refused"_s, true), u"Stopped"_s, u"refused"_s},
        {tunnel(u"a"_s, u"error"_s, u"refused"_s), u"refused"_s, u"refused"_s},
    };
    for (const auto &row : cases) {
        show(row.record);
        EXPECT_EQ(tunnelRow().stateText, row.text);
        EXPECT_EQ(tunnelRow().stateHelp, row.help) << qUtf8Printable(row.record.state);
    }
    show(publication(u"docs"_s, u"starting"_s, u"refused"_s));
    EXPECT_EQ(publicationRow().stateText, u"Starting — waiting for the profile's tailnet…"_s);
    EXPECT_EQ(publicationRow().stateHelp, u"refused"_s);
    EXPECT_TRUE(publicationRow().canRetry);
}

TEST_F(MenuRows, aBlockedPublicationSaysSoEverywhereAndOffersNothing)
{
    show(publication(u"hook"_s, u"blocked"_s, u"funnel"_s));
    EXPECT_EQ(publicationRow().address, u"Blocked — Funnel isn't in this version"_s);
    EXPECT_EQ(publicationRow().addressHelp,
        u"Publishing to the public internet with Funnel isn't available in this version. Set this publication's reach "
        "back to the tailnet, or remove it."_s);
    EXPECT_EQ(publicationRow().stateText,
        u"Blocked — publishing to the public internet with Funnel isn't available in this version."_s);
    EXPECT_EQ(publicationRow().stateHelp, publicationRow().stateText);
    EXPECT_EQ(publicationRow().toggleHelp, u"Blocked — Funnel isn't available in this version"_s);
    EXPECT_FALSE(publicationRow().canSwitch);
    EXPECT_FALSE(publicationRow().canRetry);
}

TEST_F(MenuRows, anUnreachablePublicationSaysWhereItIsMended)
{
    VeranoxPublication record = publication(u"docs"_s, u"listening"_s);
    record.reachability.state = u"unreachable"_s;
    show(record);
    EXPECT_EQ(publicationRow().tone, int(VeranoxTone::Orange));
    EXPECT_TRUE(publicationRow().stateText.startsWith(u"Unreachable — "_s));
    EXPECT_TRUE(
        publicationRow().stateText.endsWith(u" Open Settings → Publications and choose Make reachable… to fix it."_s));
    record.lastError = u"refused"_s;
    show(record);
    EXPECT_EQ(publicationRow().stateText, u"refused"_s);
}

TEST_F(MenuRows, publicationsCannotBeChangedWhileTheServiceIsAway)
{
    show(publication(u"docs"_s, u"error"_s));
    EXPECT_TRUE(publicationRow().canSwitch);
    EXPECT_TRUE(publicationRow().canRetry);
    EXPECT_TRUE(publicationRow().retryEnabled);
    service->profiles.fail(unavailable());
    refresh();
    EXPECT_FALSE(publicationRow().canSwitch);
    EXPECT_FALSE(publicationRow().retryEnabled);
    EXPECT_TRUE(publicationRow().canRetry);
}

TEST_F(MenuRows, copyingIsConfirmedForAMomentOnThatRowOnly)
{
    service->tunnels.answer({tunnel(u"a"_s, u"listening"_s), tunnel(u"b"_s, u"listening"_s)});
    refresh();
    view->tunnels()->copy(u"a"_s, u"127.0.0.1:1"_s);
    EXPECT_EQ(copied, QStringList({u"127.0.0.1:1"_s}));
    EXPECT_TRUE(tunnelRow(0).justCopied);
    EXPECT_FALSE(tunnelRow(1).justCopied);
    world.run(1200ms);
    EXPECT_FALSE(tunnelRow(0).justCopied);
}

TEST_F(MenuRows, offerNothingThatCannotBeDone)
{
    EXPECT_FALSE(view->tunnels()->canOperate());
    show(tunnel(u"a"_s, u"listening"_s));
    view->tunnels()->setEnabled(u"a"_s, false);
    view->tunnels()->retry(u"a"_s);
    EXPECT_FALSE(tunnelRow().isSwitching);
    EXPECT_FALSE(tunnelRow().isRetrying);
    EXPECT_TRUE(view->tunnels()->commands().isIdle()); // what is refused is not kept either
}

TEST_F(MenuRows, showAtOnceThatTheyAreAtItAndThenTheFailureUntilTheNextAction)
{
    int calls = 0;
    look({.setEnabled =
              [&calls](const QString &, bool) {
                  ++calls;
                  return fail(calls == 1 ? u"Tunnel a: refused"_s : QString());
              },
        .restart = [](const QString &) { return fail(u"Tunnel a: busy"_s); }});
    show(tunnel(u"a"_s, u"error"_s));
    EXPECT_TRUE(view->tunnels()->canOperate());
    view->tunnels()->setEnabled(u"a"_s, false);
    EXPECT_TRUE(tunnelRow().isSwitching);
    view->tunnels()->setEnabled(u"a"_s, true); // one thing at a time
    view->tunnels()->retry(u"a"_s);
    EXPECT_FALSE(view->tunnels()->commands().isIdle());
    world.run(1s);
    EXPECT_TRUE(view->tunnels()->commands().isIdle());
    EXPECT_EQ(calls, 1);
    EXPECT_FALSE(tunnelRow().isSwitching);
    EXPECT_EQ(view->tunnelFailure(), u"Tunnel a: refused"_s);
    EXPECT_EQ(view->publicationFailure(), QString());
    view->tunnels()->retry(u"a"_s);
    EXPECT_TRUE(tunnelRow().isRetrying);
    EXPECT_EQ(view->tunnelFailure(), QString());
    world.run(1s);
    EXPECT_EQ(view->tunnelFailure(), u"Tunnel a: busy"_s);
    view->tunnels()->setEnabled(u"a"_s, true);
    world.run(1s);
    EXPECT_EQ(view->tunnelFailure(), QString());
}
