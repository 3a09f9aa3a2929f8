#include "Tests/Base/Jobs/JobOwner.h"

using namespace Qt::StringLiterals;
using namespace jobs;

TEST(Ambient, AmbientTextIsInheritedFromTheStarter)
{
    World w;
    JobOwner o(w);
    Notes seen;
    struct L {
        static void see(Notes *s, const char *who)
        {
            const auto a = ambient();
            s->push_back(std::string(who) + "=" + (a ? a->toStdString() : "-"));
        }
        static Async<> leaf(Notes *s)
        {
            co_await sleep(2s);
            see(s, "leaf");
        }
        static Async<> child(Notes *s)
        {
            see(s, "child");
            co_await sleep(1s);
            see(s, "child");
        }
        static Async<> root(JobOwner *o, Notes *s)
        {
            see(s, "root");
            {
                const AmbientScope scope(u"inner"_s);
                auto c = fork(child(s));
                o->jobs.start(leaf(s)); // inherits "inner" for good
                co_await c;
                see(s, "root");
            }
            see(s, "root");
        }
    };
    {
        const AmbientScope scope(u"req-1"_s);
        o.jobs.start(L::root(&o, &seen));
    }
    EXPECT_FALSE(ambient());
    o.jobs.start(L::leaf(&seen)); // no text
    w.run(10s);
    EXPECT_FALSE(ambient());
    EXPECT_EQ(
        seen, (Notes{"root=req-1", "child=inner", "child=inner", "root=inner", "root=req-1", "leaf=-", "leaf=inner"}));
}
