#include "Base/Files/UserFolders.h"
#include "Tests/Support/EnvironmentVariable.h"
#include "Tests/Support/QtPrinters.h"
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

struct Kind {
    const char *variable;
    QString (*folder)();
    QString usual;
};

const Kind kinds[]{{"XDG_DATA_HOME", userDataFolder, u"/home/somebody/.local/share"_s},
    {"XDG_CONFIG_HOME", userConfigurationFolder, u"/home/somebody/.config"_s}};

} // namespace

TEST(UserFolders, FollowTheEnvironment)
{
    for (const Kind &kind : kinds) {
        for (const QString &named : {u"/d"_s, u"/d/of somebody "_s}) {
            const EnvironmentVariable variable(kind.variable, named.toUtf8());
            EXPECT_EQ(kind.folder(), named) << kind.variable;
        }
    }
}

TEST(UserFolders, AreTheUsualOnesWhenTheEnvironmentNamesNoAbsoluteFolder)
{
    const EnvironmentVariable home("HOME", "/home/somebody");
    for (const Kind &kind : kinds) {
        for (const std::optional<QByteArray> &named : {std::optional<QByteArray>(), std::optional<QByteArray>(""),
                 std::optional<QByteArray>("d"), std::optional<QByteArray>("./d"), std::optional<QByteArray>("../d"),
                 std::optional<QByteArray>("~/d"), std::optional<QByteArray>("$HOME/d")}) {
            const EnvironmentVariable variable(kind.variable, named);
            EXPECT_EQ(kind.folder(), kind.usual) << kind.variable << '=' << named.value_or("unset").toStdString();
        }
    }
}
