#include "Base/Text/Characters.h"
#include <QtGlobal>
#include <algorithm>
#include <limits>
#include <memory>
#include <unicode/brkiter.h>

namespace characters {

namespace {

bool standsAlone(QChar c)
{
    return c.unicode() < 0x80 && c != u'\r'; // of the plain ones, only CR joins with what may follow
}

// How many of the text's first `most` code units are characters of their own; the text is longer than these.
qsizetype plainCharacters(QStringView text, qsizetype most)
{
    const auto *const end = text.begin() + most + 1;
    const qsizetype plain = std::find_if_not(text.begin(), end, standsAlone) - text.begin();
    return std::max<qsizetype>(plain - 1, 0); // the last one may have an accent behind it
}

// As endOfFirst(), for any text. Boundaries are numbers of 32 bits there: what lies beyond is not looked at.
qsizetype endOfFirstOfAny(qsizetype count, QStringView text)
{
    constexpr qsizetype furthest = std::numeric_limits<int32_t>::max();
    UErrorCode status = U_ZERO_ERROR;
    const std::unique_ptr<icu::BreakIterator> boundaries(
        icu::BreakIterator::createCharacterInstance(icu::Locale::getRoot(), status));
    UText units = UTEXT_INITIALIZER;
    utext_openUChars(&units, text.utf16(), std::min(text.size(), furthest), &status);
    if (U_FAILURE(status))
        qFatal("the library of Unicode has no rules for characters: %s", u_errorName(status));
    boundaries->setText(&units, status);
    const int32_t end = boundaries->next(static_cast<int32_t>(std::min(count, furthest)));
    utext_close(&units);
    return end == icu::BreakIterator::DONE ? text.size() : end;
}

} // namespace

qsizetype endOfFirst(qsizetype count, QStringView text)
{
    if (text.size() <= count)
        return text.size(); // no character takes less than a code unit
    const qsizetype plain = plainCharacters(text, count);
    return plain == count ? plain : plain + endOfFirstOfAny(count - plain, text.sliced(plain));
}

bool exceed(qsizetype limit, QStringView text)
{
    return endOfFirst(limit, text) < text.size();
}

} // namespace characters
