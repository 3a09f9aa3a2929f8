#include "Core/VeranoxFeedbackIdentity.h"
#include "Tests/Support/QtPrinters.h"
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

TEST(FeedbackIdentity, namesTheVersionAndTheSystem)
{
    struct Row {
        QVariantMap build;
        QString systemName;
        QString systemVersion;
        QString appVersion;
        QString os;
    };
    const QList<Row> rows{
        {{{u"CFBundleShortVersionString"_s, u"1.2.3"_s}, {u"CFBundleVersion"_s, u"45"_s}}, u"macOS"_s, u"14.5.0"_s,
            u"1.2.3"_s, u"macOS 14.5.0"_s},
        {{{u"CFBundleShortVersionString"_s, u"0.1.0"_s}}, u"Linux"_s, u"6.1.0"_s, u"0.1.0"_s, u"Linux 6.1.0"_s},
        {{}, u"Linux"_s, u"6.12.48"_s, VeranoxAppVersion(QVariantMap()).version, u"Linux 6.12.48"_s},
    };
    for (const Row &row : rows) {
        const VeranoxClientIdentity identity = veranoxFeedbackIdentity({.build = VeranoxAppVersion(row.build),
            .bundleIdentifier = u"app.veranox"_s,
            .systemVersion = row.systemVersion,
            .systemName = row.systemName,
            .architecture = u"x86_64"_s});
        EXPECT_EQ(identity.appVersion, row.appVersion);
        EXPECT_EQ(identity.os, row.os);
    }
}
