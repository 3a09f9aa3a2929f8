#include "Base/Json/Reading.h"

using namespace Qt::StringLiterals;

namespace {

// Long enough for every key of ours; a key that the sender made up is cut here, so that a message stays readable.
constexpr qsizetype maximumKeyLength = 64;

QString joined(const QString &outer, const QString &inner)
{
    const bool needsStop = !inner.isEmpty() && !inner.startsWith(u'[');
    return needsStop ? outer + u'.' + inner : outer + inner;
}

} // namespace

namespace json {

Misfit Misfit::under(const QString &key) const
{
    const QString shown = key.size() > maximumKeyLength ? key.left(maximumKeyLength) + u'…' : key;
    return {joined(shown, place), expected, found};
}

Misfit Misfit::under(qsizetype index) const
{
    return {joined(u'[' + QString::number(index) + u']', place), expected, found};
}

Outcome misfit(QLatin1StringView expected, Node found)
{
    return std::unexpected(Misfit{QString(), QString(expected), found.description()});
}

Outcome read(Node value, bool &into)
{
    if (value.kind() != Node::Kind::boolean)
        return misfit("true or false"_L1, value);
    into = value.boolean();
    return {};
}

Outcome read(Node value, qint64 &into)
{
    const auto number = value.kind() == Node::Kind::number ? value.wholeNumber() : std::nullopt;
    if (!number)
        return misfit("a whole number"_L1, value);
    into = *number;
    return {};
}

Outcome read(Node value, QString &into)
{
    if (value.kind() != Node::Kind::text)
        return misfit("text"_L1, value);
    into = value.text();
    return {};
}

} // namespace json
