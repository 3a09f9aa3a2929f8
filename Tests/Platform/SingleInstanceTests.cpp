#include "Platform/Linux/BusSingleInstance.h"
#include "Tests/Support/Eventually.h"
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCall>
#include <future>
#include <gmock/gmock.h>
#include <latch>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using Outcome = SingleInstance::Outcome;
using ::testing::ElementsAre;

namespace {

// A connection of its own, as another process has it.
class Connection {
public:
    explicit Connection(const QString &address = qEnvironmentVariable("DBUS_SESSION_BUS_ADDRESS"))
        : m_name(u"connection-%1"_s.arg(quintptr(this))),
          bus(QDBusConnection::connectToBus(address, m_name))
    {
    }
    ~Connection() { QDBusConnection::disconnectFromBus(m_name); }

private:
    QString m_name;

public:
    QDBusConnection bus;
};

Outcome launch(std::chrono::milliseconds timeout = 20s)
{
    const Connection connection;
    return BusSingleInstance(connection.bus, timeout).acquire();
}

std::future<Outcome> launchElsewhere(std::chrono::milliseconds timeout = 20s)
{
    return std::async(std::launch::async, [timeout] { return launch(timeout); });
}

bool isReady(const std::future<Outcome> &outcome)
{
    return outcome.wait_for(0s) == std::future_status::ready;
}

} // namespace

TEST(SingleInstance, TheFirstLaunchIsTheOne)
{
    EXPECT_EQ(launch(), Outcome::first);
}

TEST(SingleInstance, TheNameIsFreeAfterTheFirstHasEnded)
{
    EXPECT_EQ(launch(), Outcome::first);
    EXPECT_EQ(launch(), Outcome::first);
}

TEST(SingleInstance, ASecondLaunchHandsOverWithItsToken)
{
    const Connection connection;
    BusSingleInstance first(connection.bus);
    ASSERT_EQ(first.acquire(), Outcome::first);
    QStringList tokens;
    QObject::connect(
        &first, &SingleInstance::activationRequested, &first, [&](const QString &token) { tokens << token; });

    qputenv("XDG_ACTIVATION_TOKEN", "token-of-the-launcher");
    auto second = launchElsewhere();
    ASSERT_TRUE(eventually([&] { return isReady(second); }));
    qunsetenv("XDG_ACTIVATION_TOKEN");
    auto third = launchElsewhere();
    ASSERT_TRUE(eventually([&] { return isReady(third); }));

    EXPECT_EQ(second.get(), Outcome::handedOver);
    EXPECT_EQ(third.get(), Outcome::handedOver);
    EXPECT_THAT(tokens, ElementsAre(u"token-of-the-launcher"_s, QString()));
}

TEST(SingleInstance, AFirstThatDoesNotAnswerIsReportedInBoundedTime)
{
    const Connection connection;
    BusSingleInstance first(connection.bus);
    ASSERT_EQ(first.acquire(), Outcome::first);

    // Nothing runs the event loop of the first here.
    auto second = launchElsewhere(100ms);
    ASSERT_EQ(second.wait_for(20s), std::future_status::ready);
    EXPECT_EQ(second.get(), Outcome::notAnswered);
}

TEST(SingleInstance, OfManyAtOnceExactlyOneIsFirst)
{
    constexpr int launches = 8;
    const Connection connections[launches];
    std::latch start(launches);
    std::latch end(launches + 1);
    std::vector<std::future<Outcome>> outcomes;
    std::atomic<int> done = 0;
    for (const Connection &connection : connections) {
        outcomes.push_back(std::async(std::launch::async, [&] {
            BusSingleInstance instance(connection.bus, 200ms);
            start.arrive_and_wait();
            const Outcome outcome = instance.acquire();
            ++done;
            end.arrive_and_wait(); // the first stays until all have asked
            return outcome;
        }));
    }
    EXPECT_TRUE(eventually([&] { return done == launches; }));
    end.arrive_and_wait();
    int firsts = 0;
    int unguarded = 0;
    for (auto &outcome : outcomes) {
        const Outcome result = outcome.get();
        firsts += result == Outcome::first;
        unguarded += result == Outcome::unguarded;
    }
    EXPECT_EQ(firsts, 1);
    EXPECT_EQ(unguarded, 0);
}

TEST(SingleInstance, WithoutABusTheApplicationRunsUnguarded)
{
    const Connection nowhere(u"unix:path=/nonexistent/bus"_s);
    EXPECT_EQ(BusSingleInstance(nowhere.bus).acquire(), Outcome::unguarded);
}

TEST(SingleInstance, TheDesktopMayCallEveryMethodOfAnApplication)
{
    const Connection connection;
    BusSingleInstance first(connection.bus);
    ASSERT_EQ(first.acquire(), Outcome::first);
    int activations = 0;
    QObject::connect(&first, &SingleInstance::activationRequested, &first, [&] { ++activations; });

    const Connection caller;
    const std::pair<QString, QVariantList> calls[] = {
        {u"Activate"_s, {QVariantMap()}},
        {u"Open"_s, {QStringList{u"file:///tmp"_s}, QVariantMap()}},
        {u"ActivateAction"_s, {u"any"_s, QVariantList(), QVariantMap()}},
    };
    for (const auto &[method, arguments] : calls) {
        auto call = QDBusMessage::createMethodCall(
            BusSingleInstance::service, BusSingleInstance::path, u"org.freedesktop.Application"_s, method);
        call.setArguments(arguments);
        const int before = activations;
        caller.bus.asyncCall(call);
        EXPECT_TRUE(eventually([&] { return activations == before + 1; })) << qUtf8Printable(method);
    }
}
