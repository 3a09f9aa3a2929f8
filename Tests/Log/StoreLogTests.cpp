// From a text to an entry.
#include "Tests/Log/StoreLogWorld.h"

using namespace Qt::StringLiterals;

namespace {

using StoreLog = StoreLogWorld;

TEST_F(StoreLog, FillsAnEntryThatSaysNothingAboutItself)
{
    const QDateTime before = QDateTime::currentDateTimeUtc();
    const auto entry = logged(u" [APP] ready \n"_s);
    EXPECT_FALSE(entry.id.isNull());
    EXPECT_GE(entry.timestamp, before);
    EXPECT_LE(entry.timestamp, QDateTime::currentDateTimeUtc());
    const VeranoxRuntimeLogEntry expected{.id = entry.id,
        .timestamp = entry.timestamp,
        .message = u"[APP] ready"_s,
        .schemaVersion = 2,
        .eventRedactionVersion = 1,
        .sessionID = diagnostics.sessionID,
        .componentInstanceID = diagnostics.componentInstanceID,
        .sequence = 1,
        .component = u"macos_app"_s};
    EXPECT_EQ(entry, expected);
}

TEST_F(StoreLog, TakesFromTheLineWhatItSays)
{
    const auto entry = logged(u"[Router] session_id=s component_instance_id=i correlation_id=c request_id=r "
                              "config_generation=g attempt=2 event_code=e level=WARN component=Router operation=o "
                              "outcome=x failure_stage=f retryable=true http_status=503 duration_ms=9"_s);
    VeranoxRuntimeLogEntry expected{.id = entry.id,
        .timestamp = entry.timestamp,
        .message = entry.message,
        .schemaVersion = 2,
        .eventRedactionVersion = 1,
        .sessionID = u"s"_s,
        .correlationID = u"c"_s,
        .requestID = u"r"_s,
        .componentInstanceID = u"i"_s,
        .configGenerationID = u"g"_s,
        .sequence = 1,
        .attempt = 2,
        .eventCode = u"e"_s,
        .level = u"warn"_s,
        .component = u"Router"_s,
        .operation = u"o"_s,
        .outcome = u"x"_s,
        .failureStage = u"f"_s,
        .retryable = true,
        .httpStatus = 503,
        .durationMS = 9};
    EXPECT_EQ(entry, expected);
}

TEST_F(StoreLog, PrefersWhatTheCallerSays)
{
    const auto entry = logged(u"[home] event_code=e level=warn component=c correlation_id=i"_s,
        {.eventCode = u"E"_s, .level = u"info"_s, .component = u"C"_s, .correlationID = u"I"_s, .profileName = u"P"_s});
    EXPECT_EQ(entry.eventCode, u"E"_s);
    EXPECT_EQ(entry.level, u"info"_s);
    EXPECT_EQ(entry.component, u"C"_s);
    EXPECT_EQ(entry.correlationID, u"I"_s);
    EXPECT_EQ(entry.profileName, u"P"_s);
}

TEST_F(StoreLog, FallsBackOnTheCorrelationOfTheRunningJob)
{
    const jobs::AmbientScope scope(u"ambient"_s);
    EXPECT_EQ(logged(u"a"_s).correlationID, u"ambient"_s);
    EXPECT_EQ(logged(u"correlation_id=line"_s).correlationID, u"line"_s);
    EXPECT_EQ(logged(u"correlation_id=line"_s, {.correlationID = u"caller"_s}).correlationID, u"caller"_s);
}

TEST_F(StoreLog, MakesOneEntryOfEveryLine)
{
    store->appendLog(u"a\n\n b \u2028c"_s);
    ASSERT_EQ(log(), (QStringList{u"a"_s, u"b"_s, u"c"_s}));
    EXPECT_EQ(store->runtimeLog()[0].sequence, 1U);
    EXPECT_EQ(store->runtimeLog()[2].sequence, 3U);
    EXPECT_NE(store->runtimeLog()[0].id, store->runtimeLog()[1].id);
}

TEST_F(StoreLog, PassesOverBlankMessages)
{
    store->appendLog(u" \n\t\r\n\u2029 "_s);
    EXPECT_TRUE(log().isEmpty());
    EXPECT_EQ(logged(u"a"_s).sequence, 1U);
}

TEST_F(StoreLog, RedactsBeforeItReads)
{
    const auto entry = logged(u"control_token=0123456789abcdef redaction_version=3 request_id=/x?key=k"_s);
    EXPECT_EQ(entry.message, u"control_token=[REDACTED] event_redaction_version=3 request_id=/x?key=[REDACTED]"_s);
    EXPECT_EQ(entry.requestID, u"/x?key=[REDACTED]"_s);
    EXPECT_EQ(entry.redactionVersion, std::nullopt);
}

TEST_F(StoreLog, CutsLongLinesAndLosesWhatStandsBehindTheCut)
{
    const auto entry = logged(u"level=info "_s + QString(20'000, u'x') + u" outcome=lost"_s);
    EXPECT_EQ(entry.message.size(), 16'384 + QStringView(u" … [truncated]").size());
    EXPECT_TRUE(entry.message.endsWith(u"x … [truncated]"_s));
    EXPECT_EQ(entry.level, u"info"_s);
    EXPECT_EQ(entry.outcome, std::nullopt);
}

// A secret that the cut would shorten is gone before.
TEST_F(StoreLog, RedactsBeforeItCuts)
{
    const QString name = u"control_token="_s;
    const QString before(16'384 - name.size() - 8, u'x');
    const auto entry = logged(before + name + u"0123456789abcdef0123456789abcdef"_s);
    EXPECT_EQ(entry.message, before + name + u"[REDACTE … [truncated]"_s);
}

TEST_F(StoreLog, TellsOfEachEntryAtOnce)
{
    QList<VeranoxRuntimeLogEntry> told;
    QObject::connect(&store->activityLog(), &VeranoxActivityLog::added, store.get(),
        [&told](const VeranoxRuntimeLogEntry &entry) { told.append(entry); });
    store->appendLog(u"a\nb"_s);
    EXPECT_EQ(told, store->runtimeLog());
}

TEST_F(StoreLog, InfersTheProfileFromTheServiceAndTheConfiguration)
{
    EXPECT_EQ(logged(u"[home] a"_s).profileName, std::nullopt);
    VeranoxEditableConfig config;
    config.profiles.insert(u"Lab"_s, {});
    service->config.answer({.router = VeranoxRouterConfig::defaults()});
    service->editableConfig.answer(config);
    service->profiles.answer({profile(u"home"_s, true, u"Running"_s)});
    refresh();
    EXPECT_EQ(logged(u"[home] a"_s).profileName, u"home"_s);
    EXPECT_EQ(logged(u"[lab] a"_s).profileName, u"Lab"_s);
    service->profiles.answer({profile(u"other"_s, true, u"Running"_s)});
    refresh();
    EXPECT_EQ(logged(u"[home] a"_s).profileName, std::nullopt);
    EXPECT_EQ(store->inferredProfileName(u"[other] a"_s), u"other"_s);
}

TEST_F(StoreLog, KeepsTheNewestFiveHundredInMemory)
{
    for (int number = 1; number <= 501; ++number)
        store->appendLog(QString::number(number));
    ASSERT_EQ(store->runtimeLog().size(), 500);
    EXPECT_EQ(store->runtimeLog().first().message, u"2"_s);
    EXPECT_EQ(store->runtimeLog().last().message, u"501"_s);
}

TEST_F(StoreLog, TellsOfABurstOnce)
{
    world.run();
    const ChangeCount logChanges([&] { return store->runtimeLog(); });
    QSignalSpy changes(store.get(), &VeranoxStore::changed);
    for (int number = 0; number < 1000; ++number)
        store->appendLog(u"a\nb"_s);
    EXPECT_EQ(logChanges.count(), 0);
    world.run();
    EXPECT_EQ(logChanges.count(), 1);
    EXPECT_EQ(changes.count(), 1);
    store->appendLog(u"a"_s);
    world.run();
    EXPECT_EQ(logChanges.count(), 2);
}

} // namespace
