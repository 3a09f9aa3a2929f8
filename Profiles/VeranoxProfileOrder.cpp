#include "Profiles/VeranoxProfileOrder.h"
#include <QCollator>
#include <algorithm>
#include <ranges>
#include <vector>

using namespace Qt::StringLiterals;

namespace {

bool isWork(const VeranoxProfile &profile)
{
    constexpr QLatin1StringView word{"work"};
    return profile.name.contains(word, Qt::CaseInsensitive) || profile.displayName.contains(word, Qt::CaseInsensitive);
}

} // namespace

QList<VeranoxProfile> inSharedProfileOrder(const QList<VeranoxProfile> &profiles)
{
    QCollator collator;
    collator.setCaseSensitivity(Qt::CaseInsensitive);
    std::vector<qsizetype> places(static_cast<std::size_t>(profiles.size()));
    std::ranges::copy(std::views::iota(qsizetype{0}, profiles.size()), places.begin());
    std::ranges::sort(places, [&](qsizetype one, qsizetype other) {
        const bool isWorkFirst = isWork(profiles.at(one));
        if (isWorkFirst != isWork(profiles.at(other)))
            return isWorkFirst;
        const int order = collator.compare(profiles.at(one).displayName, profiles.at(other).displayName);
        return order != 0 ? order < 0 : one < other;
    });
    QList<VeranoxProfile> sorted;
    for (const qsizetype place : places)
        sorted.append(profiles.at(place));
    return sorted;
}
