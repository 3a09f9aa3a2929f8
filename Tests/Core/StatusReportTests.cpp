#include "Core/VeranoxStatusReport.h"
#include "Tests/Support/StoreWorld.h"

using namespace Qt::StringLiterals;

class StatusReport : public StoreWorld { };

TEST_F(StatusReport, saysALineForEverythingThatIsKnown)
{
    EXPECT_EQ(describeStatus(*store), QStringList({u"service      veranox           offline"_s}));
    VeranoxProfile waiting = profile(u"travel"_s, false, u"NeedsLogin"_s);
    waiting.suffixes = {u".a.ts.net"_s, u".b.ts.net"_s};
    waiting.status.error = u"Sign in."_s;
    service->profiles.answer({profile(u"home"_s, true, u"Running"_s), waiting});
    VeranoxTunnel database = tunnel(u"db"_s, u"error"_s, u"refused\nby the target"_s);
    database.listen = u"127.0.0.1:43300"_s;
    database.target = u"db.a.ts.net:5432"_s;
    database.profile = u"home"_s;
    service->tunnels.answer({database});
    VeranoxPublication wiki = publication(u"wiki"_s, u"listening"_s, {}, true);
    wiki.target = u"127.0.0.1:80"_s;
    wiki.profile = u"home"_s;
    service->publications.answer({wiki});
    refresh();
    EXPECT_EQ(describeStatus(*store),
        QStringList({u"service      veranox           online"_s, u"profile      home              Running"_s,
            u"profile      travel            NeedsLogin   .a.ts.net .b.ts.net  Sign in."_s,
            u"tunnel       db                error        127.0.0.1:43300 -> db.a.ts.net:5432  via home  "
            u"refused by the target"_s,
            u"publication  wiki              disabled     127.0.0.1:80  on home"_s}));
}

TEST_F(StatusReport, saysWhyTheServiceFails)
{
    service->profiles.fail(unavailable());
    refresh();
    EXPECT_EQ(describeStatus(*store),
        QStringList({u"service      veranox           error        Veranox's local service is unavailable."_s}));
}
