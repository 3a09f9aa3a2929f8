#include "MenuBar/Popover/VeranoxMenuView.h"
#include "MenuBar/Popover/VeranoxQuitConfirmation.h"
#include "Profiles/VeranoxProfileOrder.h"
#include "Tests/Support/StoreWorld.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

class MenuView : public StoreWorld {
protected:
    MenuView()
    {
        view = std::make_unique<VeranoxMenuView>(world.queue, *store,
            VeranoxMenuActions{.dismissMenu = [this] { ++dismissals; },
                .requestQuit = [this] { ++quitRequests; },
                .copyText = [this](const QString &text) { copied.append(text); },
                .openAddress = [this](const QUrl &address) { opened.append(address); }});
    }

    void fail()
    {
        service->profiles.fail(unavailable());
        refresh();
    }

    QList<VeranoxActiveProfileRow> profileRows()
    {
        QList<VeranoxActiveProfileRow> rows;
        for (int place = 0; place < view->profiles()->rowCount(); ++place)
            rows.append(view->profiles()->index(place, 0).data(Qt::UserRole).value<VeranoxActiveProfileRow>());
        return rows;
    }

    int dismissals = 0;
    int quitRequests = 0;
    QStringList copied;
    QList<QUrl> opened;
    std::unique_ptr<VeranoxMenuView> view;
};

VeranoxProfile titled(const QString &name, const QString &title)
{
    VeranoxProfile record;
    record.name = name;
    record.displayName = title;
    return record;
}

QStringList titlesInOrder(const QList<VeranoxProfile> &profiles)
{
    QStringList titles;
    for (const VeranoxProfile &profile : inSharedProfileOrder(profiles))
        titles.append(profile.displayName);
    return titles;
}

} // namespace

TEST(ProfileOrder, putsWorkFirstAndSortsByTitleWithoutRegardToCapitals)
{
    EXPECT_EQ(titlesInOrder({titled(u"1"_s, u"zoo"_s), titled(u"2"_s, u"Bar"_s), titled(u"3"_s, u"alpha"_s),
                  titled(u"4"_s, u"Homework"_s), titled(u"my-WORK"_s, u"Client"_s)}),
        (QStringList{u"Client"_s, u"Homework"_s, u"alpha"_s, u"Bar"_s, u"zoo"_s}));
}

TEST(ProfileOrder, keepsTheOrderOfEqualTitles)
{
    const auto sorted = inSharedProfileOrder({titled(u"2"_s, u"a"_s), titled(u"1"_s, u"A"_s), titled(u"3"_s, u"a"_s)});
    EXPECT_EQ(sorted.at(0).name, u"2"_s);
    EXPECT_EQ(sorted.at(1).name, u"1"_s);
    EXPECT_EQ(sorted.at(2).name, u"3"_s);
}

TEST_F(MenuView, theHeaderTellsEachStateByWordAndMark)
{
    EXPECT_EQ(view->header()->statusTitle(), u"Offline"_s);
    EXPECT_EQ(view->header()->statusTone(), VeranoxTone::Gray);
    EXPECT_EQ(view->header()->actionSymbol(), u"power"_s);
    EXPECT_EQ(view->header()->actionTitle(), u"Restart Veranox"_s);
    refresh();
    EXPECT_EQ(view->header()->statusTitle(), u"Online"_s);
    EXPECT_EQ(view->header()->statusTone(), VeranoxTone::Green);
    EXPECT_EQ(view->header()->actionSymbol(), u"arrow.clockwise"_s);
    EXPECT_EQ(view->header()->actionTitle(), u"Refresh Veranox status"_s);
    fail();
    EXPECT_EQ(view->header()->statusTitle(), u"Error"_s);
    EXPECT_EQ(view->header()->statusTone(), VeranoxTone::Red);
    EXPECT_EQ(view->header()->actionSymbol(), u"power"_s);
}

TEST_F(MenuView, whileTheServiceStartsTheHeaderSaysSoAndTheFooterWaits)
{
    refresh();
    service->profiles.fail(unavailable());
    refresh();
    service->health.answer(false);
    runtime->staleTime = 1min; // so long the start takes
    view->header()->performAction();
    world.run(10s);
    EXPECT_EQ(view->header()->statusTitle(), u"Starting"_s);
    EXPECT_EQ(view->header()->statusTone(), VeranoxTone::Orange);
    EXPECT_EQ(view->header()->actionSymbol(), u"arrow.clockwise"_s);
    EXPECT_EQ(view->header()->actionTitle(), u"Refresh Veranox status"_s);
    EXPECT_FALSE(view->header()->actionEnabled());
    EXPECT_FALSE(view->footer()->serviceIsOnline());
    EXPECT_FALSE(view->banner()->visible());
    world.run(2min);
}

TEST_F(MenuView, theHeadersButtonLooksAnewWhileAllIsWell)
{
    refresh();
    const int before = service->profiles.calls;
    view->header()->performAction();
    world.run();
    EXPECT_EQ(service->profiles.calls, before + 1);
    EXPECT_FALSE(runtime->calls.contains(u"startGUI"_s));
}

TEST_F(MenuView, theBannerShowsItsOwnWordsExactlyWhileTheServiceHasFailed)
{
    EXPECT_FALSE(view->banner()->visible());
    refresh();
    EXPECT_FALSE(view->banner()->visible());
    fail();
    EXPECT_TRUE(view->banner()->visible());
    EXPECT_EQ(view->banner()->title(), u"Veranox service stopped"_s);
    EXPECT_EQ(view->banner()->text(), u"The local Veranox service isn't running, so traffic isn't being routed."_s);
    EXPECT_EQ(view->banner()->buttonTitle(), u"Restart Veranox"_s);
    EXPECT_TRUE(view->banner()->buttonEnabled());
}

TEST_F(MenuView, theBannersButtonRestartsAndSaysSo)
{
    fail();
    view->banner()->fix();
    world.run();
    EXPECT_TRUE(store->isRestartingRouter());
    EXPECT_EQ(view->banner()->buttonTitle(), u"Restarting…"_s);
    EXPECT_FALSE(view->banner()->buttonEnabled());
    EXPECT_FALSE(view->header()->actionEnabled());
}

TEST_F(MenuView, asksForTheFirstProfileWhileThereIsNone)
{
    EXPECT_FALSE(view->hasProfiles());
    QSignalSpy changes(view.get(), &VeranoxMenuView::changed);
    refresh();
    EXPECT_TRUE(view->hasProfiles());
    EXPECT_EQ(changes.size(), 1);
}

TEST_F(MenuView, aProfileWithoutAnythingReadsSo)
{
    refresh();
    const auto row = profileRows().at(0);
    EXPECT_EQ(row.suffix, u"n/a"_s);
    EXPECT_EQ(row.moreSuffixes, QString());
    EXPECT_EQ(row.suffixHelp, QString());
    EXPECT_EQ(row.backend, u"tsnet"_s);
    EXPECT_EQ(row.hostname, u"n/a"_s);
    EXPECT_EQ(row.status, u"OK"_s);
}

TEST_F(MenuView, aProfileShowsItsFirstSuffixAndHowManyMore)
{
    VeranoxProfile record = profile(u"home"_s, false, u"NeedsLogin"_s);
    record.suffixes = {u"a.example"_s, u"b.example"_s, u"c.example"_s};
    record.backend = u"tailscaled"_s;
    record.hostname = u"box"_s;
    service->profiles.answer({record});
    refresh();
    const auto row = profileRows().at(0);
    EXPECT_EQ(row.suffix, u"a.example"_s);
    EXPECT_EQ(row.moreSuffixes, u"+2"_s);
    EXPECT_EQ(row.suffixHelp, u"a.example\nb.example\nc.example"_s);
    EXPECT_EQ(row.backend, u"tailscaled"_s);
    EXPECT_EQ(row.hostname, u"box"_s);
    EXPECT_EQ(row.status, u"Issue"_s);
    record.suffixes = {u"a.example"_s};
    EXPECT_EQ(VeranoxActiveProfileRow::of(record).moreSuffixes, QString());
}

TEST_F(MenuView, profilesStandInTheSharedOrder)
{
    service->profiles.answer({profile(u"alpha"_s, true, u"Running"_s), profile(u"homework"_s, true, u"Running"_s)});
    refresh();
    EXPECT_EQ(profileRows().at(0).name, u"homework"_s);
    EXPECT_EQ(profileRows().at(1).name, u"alpha"_s);
}

TEST_F(MenuView, theFooterOffersWhatNeedsTheServiceOnlyWhileItIsOnline)
{
    EXPECT_FALSE(view->footer()->serviceIsOnline());
    refresh();
    EXPECT_TRUE(view->footer()->serviceIsOnline());
    fail();
    EXPECT_FALSE(view->footer()->serviceIsOnline());
}

TEST_F(MenuView, copyingThePacAddressIsConfirmedForAMoment)
{
    refresh();
    view->footer()->copyPAC();
    world.run();
    EXPECT_EQ(copied, QStringList({store->pacURL().toString()}));
    EXPECT_TRUE(view->footer()->justCopied());
    world.run(1s);
    view->footer()->copyPAC(); // again: the moment starts anew
    world.run(1s);
    EXPECT_TRUE(view->footer()->justCopied());
    world.run(200ms);
    EXPECT_FALSE(view->footer()->justCopied());
}

TEST_F(MenuView, passesOnWhatItsSurroundingsDo)
{
    view->footer()->openWebGUI();
    view->footer()->requestQuit();
    view->dismiss();
    EXPECT_EQ(opened, QList<QUrl>({QUrl(u"http://127.0.0.1:43200"_s)}));
    EXPECT_EQ(quitRequests, 1);
    EXPECT_EQ(dismissals, 1);
}

TEST_F(MenuView, theQuitConfirmationSaysThatItIsAtItAndCannotBeConfirmedTwice)
{
    int confirmed = 0;
    int cancelled = 0;
    VeranoxQuitConfirmation panel(*store, [&] { ++confirmed; }, [&] { ++cancelled; });
    EXPECT_EQ(panel.confirmTitle(), u"Quit Veranox"_s);
    EXPECT_FALSE(panel.isQuitting());
    panel.cancel();
    panel.confirm();
    EXPECT_EQ(confirmed, 1);
    EXPECT_EQ(cancelled, 1);
    jobs::JobScope scope(world.queue);
    scope.start(store->quitAndShutdown());
    world.run();
    EXPECT_TRUE(panel.isQuitting());
    EXPECT_EQ(panel.confirmTitle(), u"Quitting"_s);
    panel.confirm();
    EXPECT_EQ(confirmed, 1);
    world.run(1min);
}

TEST(MenuPresentation, isAsHighAsItsContentUntilTheScreenEnds)
{
    VeranoxMenuPresentation presentation;
    EXPECT_EQ(presentation.viewportHeight(), 1.0);
    EXPECT_FALSE(presentation.requiresScrolling());
    struct {
        double natural;
        std::optional<double> screen;
        double height;
        bool scrolls;
    } const cases[] = {
        {500, 1000, 500, false},
        {976, 1000, 976, false},
        {977, 1000, 976, true},
        {5000, std::nullopt, 5000, false},
        {0, 1000, 1, false},
        {-4, std::nullopt, 1, false},
        {300, 10, 1, true},
    };
    for (const auto &row : cases) {
        presentation.update(row.natural, row.screen);
        EXPECT_EQ(presentation.viewportHeight(), row.height) << row.natural;
        EXPECT_EQ(presentation.requiresScrolling(), row.scrolls) << row.natural;
    }
}

TEST(MenuPresentation, tellsOfEachChangeOnce)
{
    VeranoxMenuPresentation presentation;
    QSignalSpy changes(&presentation, &VeranoxMenuPresentation::changed);
    presentation.update(500, 1000);
    presentation.update(500, 1000);
    presentation.update(500, 900);
    EXPECT_EQ(changes.size(), 1);
    presentation.adoptScreen(400);
    EXPECT_EQ(presentation.viewportHeight(), 376);
    presentation.adoptContentHeight(100);
    EXPECT_EQ(presentation.viewportHeight(), 100);
}
