#include "Publications/VeranoxPublicationDraft.h"
#include "Tests/Support/Properties.h"
#include "Tests/Support/QtPrinters.h"
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

VeranoxPublication inState(const QString &state)
{
    VeranoxPublication publication;
    publication.state = state;
    return publication;
}

} // namespace

TEST(PublicationDraftProperties, EachHasTheValueOfTheDraft)
{
    VeranoxPublicationDraft draft;
    draft.originalName = u"web"_s;
    draft.name = u" Web2 "_s;
    draft.displayName = u"Site"_s;
    draft.profile = u"acme"_s;
    draft.target = u"127.0.0.1:8080"_s;
    draft.port = u"x"_s;
    draft.tls = true;
    draft.reach = VeranoxPublicationReach::funnel;
    draft.disabled = true;
    properties::expectAll(draft,
        {
            {"id", draft.id},
            {"isNew", false},
            {"originalName", u"web"_s},
            {"name", u" Web2 "_s},
            {"displayName", u"Site"_s},
            {"profile", u"acme"_s},
            {"target", u"127.0.0.1:8080"_s},
            {"port", u"x"_s},
            {"tls", true},
            {"reach", u"funnel"_s},
            {"disabled", true},
            {"normalName", u"web2"_s},
            {"isValidName", true},
            {"isValidTarget", true},
            {"isValidPort", false},
            {"isReadyToSave", false},
        });
}

TEST(PublicationDraftProperties, OfANewPublicationNameNoOriginal)
{
    const VeranoxPublicationDraft draft;
    EXPECT_EQ(properties::read(draft, "isNew"), true);
    EXPECT_EQ(properties::read(draft, "originalName"), QString());
}

TEST(PublicationDraftProperties, TheReachReadsAsTheServicesWordAndIsWritten)
{
    const QMetaObject &meta = VeranoxPublicationDraft::staticMetaObject;
    const QMetaProperty property = meta.property(meta.indexOfProperty("reach"));
    for (const VeranoxPublicationReach reach : allVeranoxPublicationReaches) {
        VeranoxPublicationDraft draft;
        ASSERT_TRUE(property.writeOnGadget(&draft, QVariant::fromValue(reach)));
        EXPECT_EQ(draft.reach, reach);
        EXPECT_EQ(property.readOnGadget(&draft).toString(), rawValue(reach));
    }
}

TEST(PublicationProperties, TheVisibleErrorIsEmptyWhereNoneIsShown)
{
    VeranoxPublication publication = inState(u"error"_s);
    EXPECT_EQ(properties::read(publication, "visibleLastError"), QString());
    publication.lastError = u"refused"_s;
    EXPECT_EQ(properties::read(publication, "visibleLastError"), u"refused"_s);
    publication.disabled = true;
    EXPECT_EQ(properties::read(publication, "visibleLastError"), QString());
}

TEST(PublicationProperties, OfReachabilityAndItsHintAreEmptyWhereTheySayNothing)
{
    VeranoxPublicationReachability reachability;
    EXPECT_EQ(properties::read(reachability, "summary"), QString());
    reachability.state = u"reachable"_s;
    reachability.everyone = true;
    EXPECT_EQ(properties::read(reachability, "summary"), reachability.summary().value());

    VeranoxPublicationPolicyHint hint;
    EXPECT_EQ(properties::read(hint, "policyURL"), QUrl());
    hint.policyURLString = u"http://admin.example/acls"_s;
    EXPECT_EQ(properties::read(hint, "policyURL"), QUrl()) << "not https";
    hint.policyURLString = u"https://admin.example/acls"_s;
    EXPECT_EQ(properties::read(hint, "policyURL"), QUrl(u"https://admin.example/acls"_s));
}
