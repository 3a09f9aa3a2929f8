#include "Tests/Support/QtPrinters.h"
#include "Tunnels/VeranoxSSHKeys.h"
#include <QFile>
#include <QTemporaryDir>
#include <gmock/gmock.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

class VeranoxSSHKeysTests : public ::testing::Test {
protected:
    QString path(const QString &name = {}) const { return m_home.filePath(u".ssh/"_s + name); }

    void folder(const QString &name = {}) const { ASSERT_TRUE(QDir().mkpath(path(name))); }

    void file(const QString &name) const
    {
        folder();
        QFile file(path(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly)) << name.toStdString();
    }

    void link(const QString &target, const QString &name) const
    {
        folder();
        ASSERT_TRUE(QFile::link(target, path(name)));
    }

    QStringList names() const
    {
        QStringList found;
        for (const VeranoxSSHKey &key : VeranoxSSHKeys::discover(m_home.path()))
            found.append(key.name);
        return found;
    }

    QString home() const { return m_home.path(); }

private:
    QTemporaryDir m_home;
};

TEST_F(VeranoxSSHKeysTests, NoFolderNoKeys)
{
    EXPECT_EQ(names(), QStringList());
    QFile instead(home() + u"/.ssh"_s);
    ASSERT_TRUE(instead.open(QIODevice::WriteOnly));
    EXPECT_EQ(names(), QStringList()) << "a file in its place";
}

TEST_F(VeranoxSSHKeysTests, AnUnreadableFolderHasNoKeys)
{
    file(u"id_rsa"_s);
    ASSERT_EQ(names(), QStringList({u"id_rsa"_s}));
    ASSERT_TRUE(QFile::setPermissions(path(), QFileDevice::WriteOwner | QFileDevice::ExeOwner));
    ASSERT_TRUE(QFile::setPermissions(home(),
        QFileDevice::ReadOther | QFileDevice::ExeOther | QFileDevice::ExeOwner | QFileDevice::ReadOwner
            | QFileDevice::WriteOwner));
    const uid_t user = ::geteuid();
    constexpr uid_t nobody = 65534; // root may read everything
    if (user == 0)
        ASSERT_EQ(::seteuid(nobody), 0);
    const QStringList found = names();
    if (user == 0)
        ASSERT_EQ(::seteuid(user), 0);
    EXPECT_EQ(found, QStringList());
    ASSERT_TRUE(
        QFile::setPermissions(path(), QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner));
}

TEST_F(VeranoxSSHKeysTests, AKeyHasItsPublicKeyBesideItOrAWellKnownName)
{
    for (const char *name :
        {"work", "work.pub", "notes.txt", "lonely.pub", "id_rsa", "id_ecdsa", "id_ecdsa_sk", "id_ed25519",
            "id_ed25519_sk", "id_dsa", "id_other", "ID_RSA", "with blank", "with blank.pub", "a.pub", "a.pub.pub"})
        file(QString::fromLatin1(name));
    EXPECT_EQ(names(),
        QStringList({u"id_dsa"_s, u"id_ecdsa"_s, u"id_ecdsa_sk"_s, u"id_ed25519"_s, u"id_ed25519_sk"_s, u"id_rsa"_s,
            u"with blank"_s, u"work"_s}));
}

TEST_F(VeranoxSSHKeysTests, SomeNamesAreNeverKeys)
{
    for (const char *name : {"config", "known_hosts", "known_hosts_old", "authorized_keys", "agent"}) {
        file(QString::fromLatin1(name));
        file(QString::fromLatin1(name) + u".pub"_s);
    }
    file(u"Config"_s);
    file(u"Config.pub"_s);
    EXPECT_EQ(names(), QStringList({u"Config"_s}));
}

TEST_F(VeranoxSSHKeysTests, FoldersLinksAndHiddenFilesAreNoKeys)
{
    folder(u"id_rsa"_s);
    folder(u"work.pub"_s); // stands beside "work" all the same
    file(u"work"_s);
    file(u"real"_s);
    link(path(u"work"_s), u"id_dsa"_s);
    link(path(u"nowhere"_s), u"id_ecdsa"_s);
    link(path(u"nowhere"_s), u"real.pub"_s);
    file(u".hidden"_s);
    file(u".hidden.pub"_s);
    file(u"half"_s);
    file(u".half.pub"_s);
    folder(u"deep"_s);
    file(u"deep/id_ed25519"_s);
    EXPECT_EQ(names(), QStringList({u"real"_s, u"work"_s}));
}

TEST_F(VeranoxSSHKeysTests, SortedAsPlainText)
{
    for (const char *name : {"b", "a", "Z", "a1", "\xC3\xA9", "_"}) {
        file(QString::fromUtf8(name));
        file(QString::fromUtf8(name) + u".pub"_s);
    }
    EXPECT_EQ(names(), QStringList({u"Z"_s, u"_"_s, u"a"_s, u"a1"_s, u"b"_s, u"é"_s}));
}

TEST_F(VeranoxSSHKeysTests, PathsAreAbsolute)
{
    file(u"id_rsa"_s);
    EXPECT_EQ(VeranoxSSHKeys::discover(home()),
        QList<VeranoxSSHKey>({{.path = home() + u"/.ssh/id_rsa"_s, .name = u"id_rsa"_s}}));
}

TEST_F(VeranoxSSHKeysTests, ThousandsOfEntries)
{
    constexpr int pairs = 2000;
    QStringList expected;
    for (int index = 0; index < pairs; ++index) {
        const QString name = u"key%1"_s.arg(index, 4, 10, QLatin1Char('0'));
        file(name);
        file(name + u".pub"_s);
        file(name + u".txt"_s);
        expected.append(name);
    }
    EXPECT_EQ(names(), expected);
}
