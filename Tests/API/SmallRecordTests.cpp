#include "API/Client/VeranoxAPIErrorBody.h"
#include "API/Records/VeranoxEnvironment.h"
#include "API/Records/VeranoxShutdownResponse.h"
#include "Tests/Support/RecordChecks.h"

using namespace Qt::StringLiterals;

TEST(VeranoxEnvironment, NeedsBothKeys)
{
    const QJsonObject full{{u"TailscaledAvailable"_s, true}, {u"TailscaledBin"_s, u"/usr/sbin/tailscaled"_s}};
    const VeranoxEnvironment expected{.tailscaledAvailable = true, .tailscaledBin = u"/usr/sbin/tailscaled"_s};
    EXPECT_EQ(decodeRecord<VeranoxEnvironment>(checks::text(full)), expected);
    checks::expectEachKeyIsRequired<VeranoxEnvironment>(full);
    checks::expectWrongTypesFail<VeranoxEnvironment>(full);
    checks::expectUnknownAndMiscasedKeysAreIgnored<VeranoxEnvironment>(full);
}

TEST(VeranoxEnvironment, KeysAreMatchedWithTheirCase)
{
    EXPECT_TRUE(checks::failure<VeranoxEnvironment>(R"({"tailscaledAvailable": true, "tailscaledBin": ""})"));
}

TEST(VeranoxShutdownResponse, NeedsItsStatus)
{
    const QJsonObject full{{u"status"_s, u"stopping"_s}};
    EXPECT_EQ(decodeRecord<VeranoxShutdownResponse>(checks::text(full)).status, u"stopping");
    checks::expectEachKeyIsRequired<VeranoxShutdownResponse>(full);
    checks::expectWrongTypesFail<VeranoxShutdownResponse>(full);
}

TEST(VeranoxAPIErrorBody, NeedsItsErrorAndIgnoresTheRest)
{
    const QJsonObject full{{u"error"_s, u"no such profile"_s}};
    EXPECT_EQ(decodeRecord<VeranoxAPIErrorBody>(checks::text(full)).error, u"no such profile");
    EXPECT_EQ(decodeRecord<VeranoxAPIErrorBody>(R"({"code": 7, "error": ""})").error, u"");
    checks::expectEachKeyIsRequired<VeranoxAPIErrorBody>(full);
    checks::expectWrongTypesFail<VeranoxAPIErrorBody>(full);
}
