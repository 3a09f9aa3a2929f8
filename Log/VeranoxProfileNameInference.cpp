#include "Log/VeranoxProfileNameInference.h"
#include <algorithm>
#include <bitset>

using namespace Qt::StringLiterals;

namespace {

constexpr int pairBits = 12;
using PairSet = std::bitset<1U << pairBits>;

quint16 pairHash(QChar first, QChar second)
{
    const quint32 mixed = (first.unicode() * 0x9E3779B1U) ^ (second.unicode() * 0x85EBCA6BU);
    return static_cast<quint16>(mixed >> (32 - pairBits));
}

QList<quint16> pairsOf(QStringView text)
{
    QList<quint16> pairs;
    for (qsizetype at = 1; at < text.size(); ++at)
        pairs.append(pairHash(text[at - 1], text[at]));
    return pairs;
}

PairSet pairSetOf(QStringView text)
{
    PairSet pairs;
    for (qsizetype at = 1; at < text.size(); ++at)
        pairs.set(pairHash(text[at - 1], text[at]));
    return pairs;
}

// Whether the name stands at `at` in a way that means the profile.
bool isMention(QStringView line, qsizetype at, qsizetype length)
{
    const QStringView before = line.first(at);
    const QStringView after = line.sliced(at + length);
    return (before.endsWith(u'[') && after.startsWith(u']')) || before.endsWith(u"profile=")
        || (before.endsWith(u"profile=\"") && after.startsWith(u'"')) || before.endsWith(u' ')
        || after.startsWith(u'.');
}

bool mentions(QStringView line, QStringView name)
{
    for (qsizetype at = line.indexOf(name); at >= 0; at = line.indexOf(name, at + 1)) {
        if (isMention(line, at, name.size()))
            return true;
    }
    return false;
}

} // namespace

VeranoxProfileNameInference::VeranoxProfileNameInference(QStringList names)
{
    std::ranges::sort(names);
    names.erase(std::ranges::unique(names).begin(), names.end());
    for (const QString &name : std::as_const(names)) {
        const QString lowered = name.toLower();
        m_candidates.append({.name = name, .lowered = lowered, .pairs = pairsOf(lowered)});
    }
}

std::optional<QString> VeranoxProfileNameInference::inferredProfileName(QStringView line) const
{
    if (m_candidates.isEmpty())
        return std::nullopt;
    const QString lowered = line.toString().toLower();
    const PairSet present = pairSetOf(lowered);
    const auto isPresent = [&present](quint16 pair) { return present.test(pair); };
    for (const Candidate &candidate : m_candidates) {
        if (std::ranges::all_of(candidate.pairs, isPresent) && mentions(lowered, candidate.lowered))
            return candidate.name;
    }
    return std::nullopt;
}
