#include "Core/VeranoxRuntimeEnvironment.h"
#include "Core/VeranoxSiteAddress.h"
#include "Tests/Support/QtPrinters.h"
#include <gtest/gtest.h>

namespace {

const QByteArray usual = "/opt/homebrew/bin:/usr/local/bin:/usr/bin:/bin:/usr/sbin:/sbin";

ProcessEnvironment changed(const ProcessEnvironment &application)
{
    return veranoxRuntimeEnvironment(application, VeranoxDiagnosticSession::make());
}

} // namespace

TEST(RuntimeEnvironment, searchPath)
{
    EXPECT_EQ(changed({}).value("PATH"), usual);
    struct Row {
        QByteArray inherited;
        QByteArray expected;
    };
    const Row rows[] = {
        {"", usual},
        {"/usr/bin", usual + ":/usr/bin"},
        {"/opt/homebrew/bin", "/opt/homebrew/bin"},
        {"/opt/homebrew/bin/x", "/opt/homebrew/bin/x"},
        {"/a:/opt/homebrew/bin:/b", "/a:/opt/homebrew/bin:/b"},
        {"/opt/homebrew:/bin", usual + ":/opt/homebrew:/bin"},
        {":", usual + "::"},
    };
    for (const auto &[inherited, expected] : rows)
        EXPECT_EQ(changed({{"PATH", inherited}}).value("PATH"), expected);
}

TEST(RuntimeEnvironment, siteAddressIsPassedOnUnlessEmpty)
{
    EXPECT_EQ(changed({}).value("VERANOX_SITE_URL"), veranoxSiteAddress);
    EXPECT_EQ(changed({{"VERANOX_SITE_URL", ""}}).value("VERANOX_SITE_URL"), veranoxSiteAddress);
    EXPECT_EQ(changed({{"VERANOX_SITE_URL", "https://site.test"}}).value("VERANOX_SITE_URL"), "https://site.test");
    EXPECT_EQ(changed({{"VERANOX_SITE_URL", " "}}).value("VERANOX_SITE_URL"), " ");
}

TEST(RuntimeEnvironment, theBuildHasASiteAddress)
{
    EXPECT_TRUE(QByteArray(veranoxSiteAddress).startsWith("http"));
}

TEST(RuntimeEnvironment, sessionAndReasonAreAlwaysOurs)
{
    const auto session = VeranoxDiagnosticSession::make();
    const auto environment = veranoxRuntimeEnvironment(
        {{"VERANOX_SESSION_ID", "inherited"}, {"VERANOX_START_REASON", "inherited"}}, session);
    EXPECT_EQ(environment.value("VERANOX_SESSION_ID"), session.sessionID.toUtf8());
    EXPECT_EQ(environment.value("VERANOX_START_REASON"), "app_managed");
}

TEST(RuntimeEnvironment, everythingElseIsPassedOnByteForByte)
{
    const ProcessEnvironment application{{"HOME", "/home/u"}, {"EMPTY", ""}, {"BYTES", "\xff=\x80"}};
    const auto environment = changed(application);
    for (auto entry = application.begin(); entry != application.end(); ++entry)
        EXPECT_EQ(environment.value(entry.key()), entry.value());
    EXPECT_EQ(environment.size(), application.size() + 4);
}

TEST(RuntimeEnvironment, readsTheEnvironmentOfThisProcess)
{
    qputenv("VERANOX_TEST_VALUE", "a=b\xff");
    EXPECT_EQ(currentProcessEnvironment().value("VERANOX_TEST_VALUE"), "a=b\xff");
    qunsetenv("VERANOX_TEST_VALUE");
    EXPECT_FALSE(currentProcessEnvironment().contains("VERANOX_TEST_VALUE"));
}
