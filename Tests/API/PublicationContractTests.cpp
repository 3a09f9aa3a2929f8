#include "API/Records/VeranoxPublication.h"
#include "Tests/API/ClientAndService.h"
#include "Tests/Support/Eventually.h"
#include <functional>
#include <gmock/gmock.h>
#include <vector>

using namespace Qt::StringLiterals;
using ::testing::ElementsAre;

TEST_F(ClientAndService, publicationsAreSavedSwitchedRenamedAndDeleted)
{
    EXPECT_THAT(namesOf(value(client->savePublication(u"new"_s, {}, publication()))),
        ElementsAre(u"web"_s, u"lost"_s, u"new"_s));
    EXPECT_TRUE(value(client->stopPublication(u"new"_s)).value(2).disabled);
    EXPECT_FALSE(value(client->startPublication(u"new"_s)).value(2).disabled);
    EXPECT_EQ(value(client->restartPublication(u"new"_s)).size(), 3);
    EXPECT_TRUE(eventually([&] { return value(client->fetchPublications()).value(2).state == u"listening"_s; }));
    EXPECT_FALSE(value(client->fetchPublications()).value(2).address.isEmpty());
    EXPECT_THAT(namesOf(value(client->savePublication(u"old"_s, u"new"_s, publication()))),
        ElementsAre(u"web"_s, u"lost"_s, u"old"_s));
    EXPECT_THAT(namesOf(value(client->deletePublication(u"old"_s))), ElementsAre(u"web"_s, u"lost"_s));
}

namespace {

// A change that makes the good publication one that the service refuses, and what the user reads then.
struct RefusedPublication {
    const char *name;
    std::function<void(VeranoxEditablePublication &)> change;
    QString sentence;
};

using Publication = VeranoxEditablePublication;

const std::vector<RefusedPublication> refusedPublications = {
    {"backend", [](Publication &p) { p.profile = u"daemon"_s; },
        u"Publications need a profile on the tsnet backend. Switch the profile to tsnet on the Profiles page — it will "
        "have to sign in again, because the two backends do not share state."_s},
    {"profile", [](Publication &p) { p.profile = u"gone"_s; },
        u"That profile is no longer in the configuration. Choose an existing profile."_s},
    {"ownListener", [](Publication &p) { p.target = u"127.0.0.1:43100"_s; },
        u"The target is one of Veranox's own listeners — a tunnel, a proxy, the PAC server or the control API. "
        "Publishing it would let this tailnet relay through Veranox into another one. Point the publication at your "
        "own service instead."_s},
    {"loopback", [](Publication &p) { p.target = u"192.168.1.5:80"_s; },
        u"The target must be a loopback address such as 127.0.0.1:8080, so Veranox never forwards tailnet traffic onto "
        "your local network."_s},
    {"hostAndPort", [](Publication &p) { p.target = u"8080"_s; },
        u"The target must be host:port, for example 127.0.0.1:8080."_s},
    {"numericPort", [](Publication &p) { p.target = u"127.0.0.1:http"_s; },
        u"The target must be host:port, for example 127.0.0.1:8080."_s},
    {"emptyHost", [](Publication &p) { p.target = u":8080"_s; },
        u"The target must be host:port, for example 127.0.0.1:8080."_s},
    {"port", [](Publication &p) { p.port = 65536; }, u"The tailnet port must be a number between 1 and 65535."_s},
    {"endpoint", [](Publication &p) { p.port = 443; },
        u"Another publication already uses that port on this profile. Pick a different port."_s},
    {"reach", [](Publication &p) { p.reach = u"world"_s; },
        u"That reach is not one Veranox understands. Publications are reachable from their own tailnet."_s},
};

} // namespace

TEST_F(ClientAndService, refusedPublicationsAreExplained)
{
    for (const RefusedPublication &refused : refusedPublications) {
        Publication changed = publication();
        refused.change(changed);
        EXPECT_EQ(publicationRefusal(client->savePublication(u"new"_s, {}, changed)), refused.sentence) << refused.name;
    }
    EXPECT_EQ(publicationRefusal(client->savePublication(u"web"_s, {}, publication())),
        u"A publication with that name already exists. Choose a different name.");
    EXPECT_EQ(publicationRefusal(client->savePublication(u"new"_s, u"gone"_s, publication())),
        u"This publication no longer exists — it was removed while you were editing it. Close the editor and create it "
        u"again.");
}

TEST_F(ClientAndService, actionsOnAPublicationThatIsGoneAreExplained)
{
    const QString gone = u"That publication no longer exists — it was changed or removed elsewhere."_s;
    EXPECT_EQ(publicationRefusal(client->deletePublication(u"gone"_s)), gone);
    EXPECT_EQ(publicationRefusal(client->startPublication(u"gone"_s)), gone);
    EXPECT_EQ(publicationRefusal(client->stopPublication(u"gone"_s)), gone);
    EXPECT_EQ(publicationRefusal(client->restartPublication(u"gone"_s)), gone);
}

TEST_F(ClientAndService, aPublicationThatCannotStartIsSwitchedOnAllTheSame)
{
    const auto failed = outcome(client->startPublication(u"lost"_s));
    ASSERT_FALSE(failed);
    EXPECT_THAT(VeranoxPublicationErrorMessage::message(failed.error(), {}).toStdString(),
        testing::MatchesRegex(
            "The publication was switched on and saved, but it could not be started: .*no licence.*"));
    EXPECT_FALSE(value(client->fetchPublications()).value(1).disabled);
}
