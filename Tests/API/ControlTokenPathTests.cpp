#include "API/Client/VeranoxControlToken.h"
#include "Tests/Support/EnvironmentVariable.h"
#include "Tests/Support/QtPrinters.h"
#include <QDir>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

// Where the token is looked for when XDG_DATA_HOME has this value; null is unset.
QString tokenPathWith(const QByteArray &dataHome)
{
    const EnvironmentVariable variable("XDG_DATA_HOME", dataHome.isNull() ? std::nullopt : std::optional(dataHome));
    return defaultControlTokenPath();
}

} // namespace

TEST(ControlTokenPath, FollowsTheEnvironment)
{
    EXPECT_EQ(tokenPathWith("/d"), u"/d/Veranox/control.token"_s);
    EXPECT_EQ(tokenPathWith("/d/e "), u"/d/e /Veranox/control.token"_s);
}

TEST(ControlTokenPath, LiesInTheHomeFolderWhenTheEnvironmentNamesNoAbsoluteFolder)
{
    const QString usual = QDir::homePath() + u"/.local/share/Veranox/control.token"_s;
    for (const QByteArray &named : {QByteArray(), QByteArray(""), QByteArray("d"), QByteArray("./d"),
             QByteArray("../d"), QByteArray("~/d"), QByteArray("$HOME/d")})
        EXPECT_EQ(tokenPathWith(named), usual) << named.toStdString();
}
