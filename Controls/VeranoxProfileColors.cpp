#include "Controls/VeranoxProfileColors.h"
#include "API/Values/VeranoxProfileAppearance.h"

using namespace Qt::StringLiterals;

QColor VeranoxProfileColors::color(const QString &identifier, bool dark)
{
    const auto *known = VeranoxProfileAppearance::color(identifier);
    if (!known)
        known = VeranoxProfileAppearance::color(u"gray"_s);
    return QColor::fromRgb(dark ? known->dark : known->light);
}
