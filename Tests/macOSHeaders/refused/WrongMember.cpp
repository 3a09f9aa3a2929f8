// Refused: no member named 'toNSStrings' in 'QString'
#include <QString>

void *convert(const QString &text)
{
    return text.toNSStrings();
}
