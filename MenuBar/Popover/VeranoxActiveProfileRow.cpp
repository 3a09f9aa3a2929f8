#include "MenuBar/Popover/VeranoxActiveProfileRow.h"

using namespace Qt::StringLiterals;

namespace {

QString orElse(const QString &text, const QString &instead)
{
    return text.isEmpty() ? instead : text;
}

} // namespace

VeranoxActiveProfileRow VeranoxActiveProfileRow::of(const VeranoxProfile &profile)
{
    const auto more = profile.suffixes.size() - 1;
    VeranoxActiveProfileRow row;
    row.name = profile.name;
    row.symbol = profile.profileIconName();
    row.accent = profile.profileAccentColor();
    row.displayName = profile.displayName;
    row.suffix = profile.suffixes.isEmpty() ? u"n/a"_s : profile.suffixes.constFirst();
    row.moreSuffixes = more > 0 ? u"+%1"_s.arg(more) : QString();
    row.suffixHelp = profile.suffixes.join(u'\n');
    row.backend = orElse(profile.backend, u"tsnet"_s);
    row.hostname = orElse(profile.hostname, u"n/a"_s);
    row.isOK = profile.status.ok;
    row.status = row.isOK ? u"OK"_s : u"Issue"_s;
    return row;
}
