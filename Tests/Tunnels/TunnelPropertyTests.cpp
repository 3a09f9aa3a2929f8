#include "Tests/Support/Properties.h"
#include "Tests/Support/QtPrinters.h"
#include "Tunnels/VeranoxTunnelDraft.h"
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

TEST(TunnelDraftProperties, EachHasTheValueOfTheDraft)
{
    VeranoxTunnelDraft draft;
    draft.originalName = u"db"_s;
    draft.name = u" DB2 "_s;
    draft.displayName = u"Database"_s;
    draft.profile = u"acme"_s;
    draft.target = u"db.internal:5432"_s;
    draft.useSSH = true;
    draft.bastion = u"jump"_s;
    draft.sshUser = u"me"_s;
    draft.sshAuth = VeranoxTunnelSSHAuth::password;
    draft.identityFile = u"/key"_s;
    draft.listen = u"127.0.0.1:43301"_s;
    draft.disabled = true;
    properties::expectAll(draft,
        {
            {"id", draft.id},
            {"isNew", false},
            {"originalName", u"db"_s},
            {"name", u" DB2 "_s},
            {"displayName", u"Database"_s},
            {"profile", u"acme"_s},
            {"target", u"db.internal:5432"_s},
            {"useSSH", true},
            {"bastion", u"jump"_s},
            {"sshUser", u"me"_s},
            {"sshAuth", u"password"_s},
            {"identityFile", u"/key"_s},
            {"password", QString()},
            {"hasStoredPassword", false},
            {"listen", u"127.0.0.1:43301"_s},
            {"disabled", true},
            {"normalName", u"db2"_s},
            {"isValidName", true},
            {"isValidTarget", true},
            {"needsPassword", true},
            {"isReadyToSave", false},
        });
}

TEST(TunnelDraftProperties, OfANewTunnelNameNoOriginal)
{
    const VeranoxTunnelDraft draft;
    EXPECT_EQ(properties::read(draft, "isNew"), true);
    EXPECT_EQ(properties::read(draft, "originalName"), QString());
}

TEST(TunnelDraftProperties, TheAuthenticationReadsAsTheServicesWordAndIsWritten)
{
    const QMetaObject &meta = VeranoxTunnelDraft::staticMetaObject;
    const QMetaProperty property = meta.property(meta.indexOfProperty("sshAuth"));
    for (const VeranoxTunnelSSHAuth auth : allVeranoxTunnelSSHAuths) {
        VeranoxTunnelDraft draft;
        ASSERT_TRUE(property.writeOnGadget(&draft, QVariant::fromValue(auth)));
        EXPECT_EQ(draft.sshAuth, auth);
        EXPECT_EQ(property.readOnGadget(&draft).toString(), rawValue(auth));
    }
}
