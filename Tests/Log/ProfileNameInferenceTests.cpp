#include "Log/VeranoxProfileNameInference.h"
#include "Tests/Support/QtPrinters.h"
#include "Tests/Support/RandomText.h"
#include <algorithm>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

std::optional<QString> inferred(const QStringList &names, const QString &line)
{
    return VeranoxProfileNameInference(names).inferredProfileName(line);
}

// What the inference is, by definition.
std::optional<QString> definedName(QStringList names, const QString &line)
{
    std::ranges::sort(names);
    const QString lowered = line.toLower();
    for (const QString &name : std::as_const(names)) {
        const QString n = name.toLower();
        if (lowered.contains(u'[' + n + u']') || lowered.contains(u"profile="_s + n)
            || lowered.contains(u"profile=\""_s + n + u'"') || lowered.contains(u' ' + n) || lowered.contains(n + u'.'))
            return name;
    }
    return std::nullopt;
}

TEST(ProfileNameInference, KnowsEveryWayOfMentioningAProfile)
{
    for (const QString &line : {u"[work]"_s, u"xprofile=worker"_s, u"profile=\"work\""_s, u"a workspace"_s,
             u"https://network.example"_s, u"x [WORK] y"_s, u"a WORK"_s})
        EXPECT_EQ(inferred({u"work"_s}, line), u"work"_s) << qPrintable(line);
    for (const QString &line :
        {u""_s, u"work"_s, u"homework"_s, u"[works]"_s, u"profile=\"works\""_s, u"(work)"_s, u"\twork"_s, u" wor"_s})
        EXPECT_EQ(inferred({u"work"_s}, line), std::nullopt) << qPrintable(line);
}

TEST(ProfileNameInference, PrefersTheFirstNameInTextOrder)
{
    EXPECT_EQ(inferred({u"app"_s, u"api"_s}, u"[app] and [api]"_s), u"api"_s);
    EXPECT_EQ(inferred({u"b"_s, u"A"_s}, u" b a"_s), u"A"_s);
    EXPECT_EQ(inferred({u"b"_s, u"a"_s, u"b"_s}, u" b"_s), u"b"_s);
}

TEST(ProfileNameInference, LooksAtLaterMentionsOfAName)
{
    EXPECT_EQ(inferred({u"work"_s}, u"homework, [work]"_s), u"work"_s);
    EXPECT_EQ(inferred({u"aa"_s}, u"xaaa."_s), u"aa"_s);
}

TEST(ProfileNameInference, AnswersInTheSpellingOfTheCandidate)
{
    EXPECT_EQ(inferred({u"Büro"_s}, u"[BÜRO]"_s), u"Büro"_s);
}

TEST(ProfileNameInference, HasNoAnswerWithoutCandidates)
{
    EXPECT_EQ(VeranoxProfileNameInference().inferredProfileName(u" x."), std::nullopt);
    EXPECT_EQ(inferred({}, u" x."_s), std::nullopt);
}

TEST(ProfileNameInference, EqualsItsDefinitionForNamesAndLinesOfAllSorts)
{
    const QStringList letters{u"a"_s, u"b"_s, u"A"_s, u"-"_s, u"."_s, u"İ"_s, u"🙂"_s, u"[b"_s};
    const QStringList pieces = letters + QStringList{u" "_s, u"["_s, u"]"_s, u"profile="_s, u"\""_s, u"x"_s};
    RandomText random(2);
    int found = 0;
    for (int round = 0; round < 5000; ++round) {
        QStringList candidates;
        for (int left = random.below(5); left > 0; --left)
            candidates.append(random.of(letters, 4)); // an empty name is one, too
        const QString line = random.of(pieces, 12);
        const auto name = inferred(candidates, line);
        ASSERT_EQ(name, definedName(candidates, line)) << qPrintable(candidates.join(u'|') + u" in "_s + line);
        found += name.has_value();
    }
    EXPECT_GT(found, 500);
    EXPECT_LT(found, 4500);
}

} // namespace
