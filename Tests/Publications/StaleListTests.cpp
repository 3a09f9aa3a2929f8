// Changes and refreshes that overlap in every order: a list that is older than what stands there never replaces it.
#include "Tests/Support/StoreWorld.h"
#include <random>

using namespace Qt::StringLiterals;

namespace {

// One kind of record. The service counts its changes, and every list that it gives bears the count.
struct Lane {
    std::function<void()> holdRead;
    std::function<void(qint64)> serveRead; // fixes the answer, which is still on its way
    std::function<void()> releaseRead;
    std::function<void()> beginChange;
    std::function<void(qint64)> serveChange;
    std::function<void()> serveRefusal; // the service has changed something all the same
    std::function<void()> releaseChange;
    std::function<qint64()> shown; // the count of the store's list

    qint64 truth = 0; // of the service
    qint64 seen = 0; // the highest that was ever shown
    bool isReadServed = false;
    bool isChanging = false;
    bool isChangeServed = false;
};

template <class Record> QList<Record> counted(qint64 count)
{
    Record record;
    record.activeConns = count;
    return {record};
}

template <class Record> qint64 countOf(const QList<Record> &records)
{
    return records.isEmpty() ? 0 : records.first().activeConns;
}

} // namespace

class StaleListTests : public StoreWorld, public ::testing::WithParamInterface<unsigned> {
protected:
    StaleListTests() : m_random(GetParam()), m_scope(world.queue) { m_lanes = {tunnelLane(), publicationLane()}; }

    int choose(int count) { return static_cast<int>(m_random() % static_cast<unsigned>(count)); }

    void step()
    {
        Lane &lane = m_lanes[static_cast<std::size_t>(choose(2))];
        switch (choose(6)) {
        case 0:
            beginRefresh();
            break;
        case 1:
            lane.serveRead(lane.truth);
            lane.isReadServed = true;
            break;
        case 2:
            if (lane.isReadServed)
                endRead(lane);
            break;
        case 3:
            if (!lane.isChanging)
                lane.beginChange();
            lane.isChanging = true;
            break;
        case 4:
            serveChange(lane);
            break;
        default:
            if (lane.isChangeServed)
                endChange(lane);
        }
        world.run();
    }

    void beginRefresh()
    {
        if (store->isRefreshing())
            return;
        for (Lane &lane : m_lanes) {
            lane.holdRead();
            lane.isReadServed = false;
        }
        store->requestRefresh();
    }

    void serveChange(Lane &lane)
    {
        if (!lane.isChanging || lane.isChangeServed)
            return;
        ++lane.truth;
        lane.isChangeServed = true;
        if (choose(3) == 0)
            lane.serveRefusal();
        else
            lane.serveChange(lane.truth);
    }

    void endChange(Lane &lane)
    {
        lane.isReadServed = false; // the refusal's own read begins now: what was served before is not for it
        lane.releaseChange();
        lane.isChanging = lane.isChangeServed = false;
    }

    static void endRead(Lane &lane)
    {
        lane.releaseRead();
        lane.holdRead();
        lane.isReadServed = false;
    }

    void finishEverything()
    {
        for (int round = 0; round < 4; ++round) {
            for (Lane &lane : m_lanes) {
                serveChange(lane);
                if (lane.isChangeServed)
                    endChange(lane);
                world.run();
                lane.serveRead(lane.truth);
                lane.releaseRead();
                world.run();
            }
        }
        refresh();
    }

    std::array<Lane, 2> m_lanes;
    std::mt19937 m_random; // NOLINT(cert-msc51-cpp): each seed is a test of its own

private:
    Lane tunnelLane()
    {
        return {.holdRead = [this] { service->tunnels.hold(); },
            .serveRead = [this](qint64 count) { service->tunnels.answer(counted<VeranoxTunnel>(count)); },
            .releaseRead = [this] { service->tunnels.release(); },
            .beginChange =
                [this] {
                    service->tunnelStart.hold();
                    m_scope.start(store->setTunnelEnabled(u"a"_s, true));
                },
            .serveChange = [this](qint64 count) { service->tunnelStart.answer(counted<VeranoxTunnel>(count)); },
            .serveRefusal = [this] { service->tunnelStart.fail(VeranoxAPIFailure::refused(u"refused"_s, 409)); },
            .releaseChange = [this] { service->tunnelStart.release(); },
            .shown = [this] { return countOf(store->tunnels()); }};
    }

    Lane publicationLane()
    {
        return {.holdRead = [this] { service->publications.hold(); },
            .serveRead = [this](qint64 count) { service->publications.answer(counted<VeranoxPublication>(count)); },
            .releaseRead = [this] { service->publications.release(); },
            .beginChange =
                [this] {
                    service->publicationStart.hold();
                    m_scope.start(store->setPublicationEnabled(u"a"_s, true));
                },
            .serveChange = [this](
                               qint64 count) { service->publicationStart.answer(counted<VeranoxPublication>(count)); },
            .serveRefusal = [this] { service->publicationStart.fail(VeranoxAPIFailure::refused(u"refused"_s, 409)); },
            .releaseChange = [this] { service->publicationStart.release(); },
            .shown = [this] { return countOf(store->publications()); }};
    }

    jobs::JobScope m_scope;
};

TEST_P(StaleListTests, NeverWin)
{
    for (int count = 0; count < 8000; ++count) {
        step();
        for (Lane &lane : m_lanes) {
            ASSERT_GE(lane.shown(), lane.seen) << "a list went back in time at step " << count;
            lane.seen = lane.shown();
        }
    }
    finishEverything();
    for (const Lane &lane : m_lanes) {
        EXPECT_GT(lane.truth, 100) << "too little happened to show anything";
        EXPECT_EQ(lane.shown(), lane.truth);
    }
}

INSTANTIATE_TEST_SUITE_P(Orders, StaleListTests, ::testing::Range(1U, 21U));
