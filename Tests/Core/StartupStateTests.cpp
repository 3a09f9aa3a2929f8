#include "API/Values/VeranoxRecordClass.h"
#include "Core/VeranoxStartupState.h"
#include "Tests/Support/QtPrinters.h"
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

VeranoxProfile profile(bool ok, const QString &backendState)
{
    VeranoxProfile record;
    record.status.ok = ok;
    record.status.backendState = backendState;
    return record;
}

template <class Record> Record record(bool disabled, const QString &state, const QString &lastError)
{
    Record made;
    made.disabled = disabled;
    made.state = state;
    made.lastError = lastError;
    return made;
}

struct Row {
    bool disabled;
    QString state;
    QString lastError;
    VeranoxRecordClass expected;
};

} // namespace

TEST(RecordClass, ofAProfile)
{
    struct ProfileRow {
        bool ok;
        QString backendState;
        VeranoxRecordClass expected;
    };
    const ProfileRow rows[] = {
        {true, u"Running"_s, VeranoxRecordClass::ready},
        {true, u"Starting"_s, VeranoxRecordClass::ready},
        {true, QString(), VeranoxRecordClass::ready},
        {false, QString(), VeranoxRecordClass::starting},
        {false, u"NoState"_s, VeranoxRecordClass::starting},
        {false, u"Starting"_s, VeranoxRecordClass::starting},
        {false, u"starting"_s, VeranoxRecordClass::failed}, // case matters
        {false, u" Starting"_s, VeranoxRecordClass::failed}, // and so do blanks
        {false, u"NeedsLogin"_s, VeranoxRecordClass::failed},
        {false, u"Running"_s, VeranoxRecordClass::failed},
    };
    for (const auto &[ok, backendState, expected] : rows)
        EXPECT_EQ(classOf(profile(ok, backendState)), expected) << ok << backendState.toStdString();
}

TEST(RecordClass, ofATunnel)
{
    const Row rows[] = {
        {true, u"error"_s, u"text"_s, VeranoxRecordClass::disabled},
        {true, u"listening"_s, QString(), VeranoxRecordClass::disabled},
        {false, u"error"_s, QString(), VeranoxRecordClass::failed},
        {false, u"listening"_s, u"text"_s, VeranoxRecordClass::failed},
        {false, u"listening"_s, u" "_s, VeranoxRecordClass::failed}, // not trimmed
        {false, u"listening"_s, QString(), VeranoxRecordClass::ready},
        {false, u"starting"_s, QString(), VeranoxRecordClass::starting},
        {false, u"stopped"_s, QString(), VeranoxRecordClass::starting},
        {false, u"blocked"_s, QString(), VeranoxRecordClass::starting},
        {false, QString(), QString(), VeranoxRecordClass::starting},
    };
    for (const auto &[disabled, state, lastError, expected] : rows)
        EXPECT_EQ(classOf(record<VeranoxTunnel>(disabled, state, lastError)), expected) << state.toStdString();
}

TEST(RecordClass, ofAPublication)
{
    const Row rows[] = {
        {true, u"blocked"_s, u"text"_s, VeranoxRecordClass::disabled},
        {false, u"blocked"_s, u"text"_s, VeranoxRecordClass::blocked},
        {false, u"error"_s, QString(), VeranoxRecordClass::failed},
        {false, u"listening"_s, u"text"_s, VeranoxRecordClass::failed},
        {false, u"listening"_s, u" \n"_s, VeranoxRecordClass::ready}, // trimmed
        {false, u"listening"_s, QString(), VeranoxRecordClass::ready},
        {false, u"starting"_s, QString(), VeranoxRecordClass::starting},
        {false, u"stopped"_s, QString(), VeranoxRecordClass::starting},
    };
    for (const auto &[disabled, state, lastError, expected] : rows)
        EXPECT_EQ(classOf(record<VeranoxPublication>(disabled, state, lastError)), expected) << state.toStdString();
}

TEST(StartupStateFields, nothingYet)
{
    EXPECT_EQ(startupStateFields(ServiceState::offline(), {}, {}, {}),
        u"service=offline profiles_ready=0 profiles_starting=0 profiles_failed=0 "
        "tunnels_ready=0 tunnels_starting=0 tunnels_disabled=0 tunnels_failed=0 "
        "publications_ready=0 publications_starting=0 publications_disabled=0 publications_failed=0 "
        "publications_blocked=0"_s);
}

TEST(StartupStateFields, countsEveryClassInTheFixedOrder)
{
    const auto tunnel = record<VeranoxTunnel>;
    const auto publication = record<VeranoxPublication>;
    const QList<VeranoxProfile> profiles{profile(true, {}), profile(false, {}), profile(false, u"NoState"_s),
        profile(false, u"NeedsLogin"_s), profile(false, u"Stopped"_s), profile(false, u"x"_s)};
    const QList<VeranoxTunnel> tunnels{tunnel(false, u"listening"_s, {}), tunnel(false, u"starting"_s, {}),
        tunnel(false, {}, {}), tunnel(true, u"error"_s, {}), tunnel(true, {}, {}), tunnel(true, {}, {}),
        tunnel(false, u"error"_s, {})};
    const QList<VeranoxPublication> publications{publication(false, u"listening"_s, {}),
        publication(false, u"starting"_s, {}), publication(true, {}, {}), publication(true, {}, {}),
        publication(false, u"error"_s, {}), publication(false, u"blocked"_s, u"text"_s),
        publication(false, u"blocked"_s, {}), publication(false, u"blocked"_s, {})};
    EXPECT_EQ(startupStateFields(ServiceState::error(u"text"_s), profiles, tunnels, publications),
        u"service=error profiles_ready=1 profiles_starting=2 profiles_failed=3 "
        "tunnels_ready=1 tunnels_starting=2 tunnels_disabled=3 tunnels_failed=1 "
        "publications_ready=1 publications_starting=1 publications_disabled=2 publications_failed=1 "
        "publications_blocked=3"_s);
}

TEST(StartupStateFields, theWordsOfTheService)
{
    for (const auto &[state, word] : {std::pair(ServiceState::starting(), u"service=starting "_s),
             std::pair(ServiceState::online(), u"service=online "_s)})
        EXPECT_TRUE(startupStateFields(state, {}, {}, {}).startsWith(word));
}
