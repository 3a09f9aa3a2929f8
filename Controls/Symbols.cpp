#include "Controls/Symbols.h"
#include <QFontDatabase>
#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

struct Glyph {
    QLatin1StringView symbol;
    char32_t codePoint = 0;
};

constexpr Glyph glyphs[] = {
// sorted by symbol
#include "symbols.inc"
};

} // namespace

Symbols::Symbols(QObject *parent) : QObject(parent)
{
    const int font = QFontDatabase::addApplicationFont(u":/Veranox/Controls/symbols.ttf"_s);
    m_family = QFontDatabase::applicationFontFamilies(font).value(0);
}

QString Symbols::glyph(const QString &name)
{
    const auto found = std::ranges::lower_bound(glyphs, name, {}, &Glyph::symbol);
    if (found == std::end(glyphs) || found->symbol != name)
        return {};
    return QString::fromUcs4(&found->codePoint, 1);
}
