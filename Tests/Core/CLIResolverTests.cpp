#include "Core/VeranoxCLIResolver.h"
#include "Tests/Support/QtPrinters.h"
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

constexpr auto ownerOnly = QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner;
constexpr auto ordinary = ownerOnly | QFile::ReadGroup | QFile::ExeGroup | QFile::ReadOther | QFile::ExeOther;

class CLIResolver : public ::testing::Test {
protected:
    QString file(const QString &folder, QFile::Permissions permissions)
    {
        EXPECT_TRUE(QDir(root.path()).mkpath(folder));
        const QString path = root.filePath(folder + u"/veranox"_s);
        QFile created(path);
        EXPECT_TRUE(created.open(QFile::WriteOnly));
        EXPECT_TRUE(created.setPermissions(permissions));
        return path;
    }
    static QString chosen(const QStringList &candidates)
    {
        const auto command = VeranoxCLIResolver::firstTrusted(candidates);
        return command ? command->executableURL.toLocalFile() : u"none"_s;
    }
    QTemporaryDir root;
};

} // namespace

TEST_F(CLIResolver, looksAtItsOwnCopyFirst)
{
    EXPECT_EQ(VeranoxCLIResolver::candidates(u"/opt/veranox/lib/veranox"_s),
        QStringList(
            {u"/opt/veranox/lib/veranox/veranox"_s, u"/opt/homebrew/bin/veranox"_s, u"/usr/local/bin/veranox"_s}));
}

TEST_F(CLIResolver, withoutResourcesLooksOnlyWherePackageManagersPutOne)
{
    EXPECT_EQ(VeranoxCLIResolver::candidates(QString()),
        QStringList({u"/opt/homebrew/bin/veranox"_s, u"/usr/local/bin/veranox"_s}));
}

TEST_F(CLIResolver, theOwnCopyWinsAndHasNoLeadingArguments)
{
    const QString own = file(u"own"_s, ordinary);
    const auto command = VeranoxCLIResolver::resolve(root.filePath(u"own"_s));
    ASSERT_TRUE(command);
    EXPECT_EQ(*command, (VeranoxCommand{.executableURL = QUrl::fromLocalFile(own), .leadingArguments = {}}));
}

TEST_F(CLIResolver, aFileThatOthersCanWriteIsSkippedForTheNext)
{
    const QString next = file(u"next"_s, ordinary);
    for (const auto writable : {QFile::WriteGroup, QFile::WriteOther}) {
        const QString first = file(u"first"_s, ordinary | writable);
        EXPECT_EQ(chosen({first, next}), next);
    }
    EXPECT_EQ(chosen({file(u"first"_s, ownerOnly), next}), root.filePath(u"first/veranox"_s));
}

TEST_F(CLIResolver, whatCannotBeExecutedIsSkipped)
{
    const QString next = file(u"next"_s, ordinary);
    EXPECT_EQ(chosen({file(u"plain"_s, QFile::ReadOwner | QFile::WriteOwner), next}), next);
    EXPECT_EQ(chosen({root.filePath(u"missing"_s), next}), next);
    EXPECT_EQ(chosen({root.path(), next}), next); // a folder has the same permission bits
}

TEST_F(CLIResolver, aRelativePathIsSkipped)
{
    const QString next = file(u"next"_s, ordinary);
    const QString relative = QDir::current().relativeFilePath(file(u"first"_s, ordinary));
    EXPECT_EQ(chosen({relative, next}), next);
}

TEST_F(CLIResolver, aLinkCountsAsWhatItLeadsTo)
{
    const QString target = file(u"target"_s, ordinary);
    const QString link = root.filePath(u"link"_s);
    ASSERT_TRUE(QFile::link(target, link));
    EXPECT_EQ(chosen({link}), link);
    ASSERT_TRUE(QFile::setPermissions(target, ordinary | QFile::WriteGroup));
    EXPECT_EQ(chosen({link}), u"none"_s);
}

TEST_F(CLIResolver, noCandidateGivesNoCommand)
{
    EXPECT_EQ(chosen({}), u"none"_s);
    EXPECT_EQ(chosen({root.filePath(u"missing"_s)}), u"none"_s);
}
