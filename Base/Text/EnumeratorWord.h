#pragma once
#include <QMetaEnum>
#include <QString>

// The enumerator's own name, for enumerations that are logged in the words that the code uses. Enum is known to
// QMetaEnum, and the value is one of its enumerators. Any thread.
template <class Enum> QString enumeratorWord(Enum value)
{
    return QString::fromLatin1(QMetaEnum::fromType<Enum>().valueToKey(int(value)));
}
