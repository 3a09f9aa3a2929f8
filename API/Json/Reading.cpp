#include "API/Json/Reading.h"

using namespace Qt::StringLiterals;

namespace {

// Long enough for every key of ours; a key that the sender made up is cut here, so that a message stays readable.
constexpr qsizetype maximumKeyLength = 64;

QString kindOf(const QJsonValue &value)
{
    switch (value.type()) {
    case QJsonValue::Null:
        return u"null"_s;
    case QJsonValue::Bool:
        return u"true or false"_s;
    case QJsonValue::Double:
        return u"the number "_s + QString::number(value.toDouble(), 'g', 17);
    case QJsonValue::String:
        return u"text"_s;
    case QJsonValue::Array:
        return u"a list"_s;
    case QJsonValue::Object:
        return u"an object"_s;
    case QJsonValue::Undefined:
        return u"nothing"_s;
    }
    Q_UNREACHABLE();
}

QString joined(const QString &outer, const QString &inner)
{
    const bool needsStop = !inner.isEmpty() && !inner.startsWith(u'[');
    return needsStop ? outer + u'.' + inner : outer + inner;
}

std::optional<qint64> wholeNumber(const QJsonValue &value)
{
    // Qt answers with the default for what is no whole number of 64 bits, so two defaults tell it from such a number.
    const qint64 number = value.toInteger(0);
    if (number == 0 && value.toInteger(1) != 0)
        return std::nullopt;
    return number;
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

Outcome misfit(QLatin1StringView expected, const QJsonValue &found)
{
    return std::unexpected(Misfit{QString(), QString(expected), kindOf(found)});
}

Outcome read(const QJsonValue &value, bool &into)
{
    if (!value.isBool())
        return misfit("true or false"_L1, value);
    into = value.toBool();
    return {};
}

Outcome read(const QJsonValue &value, qint64 &into)
{
    const auto number = wholeNumber(value);
    if (!number)
        return misfit("a whole number"_L1, value);
    into = *number;
    return {};
}

Outcome read(const QJsonValue &value, QString &into)
{
    if (!value.isString())
        return misfit("text"_L1, value);
    into = value.toString();
    return {};
}

} // namespace json
