#include "Log/VeranoxRuntimeLogMetadataParser.h"
#include <algorithm>
#include <variant>

using namespace Qt::StringLiterals;

namespace {

using Metadata = VeranoxRuntimeLogMetadata;
using Target = std::variant<std::optional<QString> Metadata::*, std::optional<qint64> Metadata::*,
    std::optional<bool> Metadata::*>;

struct Key {
    QStringView name;
    Target target;
};

constexpr Key keys[]{
    {u"session_id", &Metadata::sessionID},
    {u"correlation_id", &Metadata::correlationID},
    {u"request_id", &Metadata::requestID},
    {u"component_instance_id", &Metadata::componentInstanceID},
    {u"config_generation", &Metadata::configGenerationID},
    {u"attempt", &Metadata::attempt},
    {u"event_code", &Metadata::eventCode},
    {u"level", &Metadata::level},
    {u"component", &Metadata::component},
    {u"operation", &Metadata::operation},
    {u"outcome", &Metadata::outcome},
    {u"failure_stage", &Metadata::failureStage},
    {u"retryable", &Metadata::retryable},
    {u"http_status", &Metadata::httpStatus},
    {u"duration_ms", &Metadata::durationMS},
};
constexpr qsizetype keyCount = std::ssize(keys);
constexpr qsizetype longestKey = std::ranges::max(keys, {}, [](const Key &key) { return key.name.size(); }).name.size();

bool beginsWord(QStringView text, qsizetype at)
{
    return at == 0 || text[at - 1].isSpace();
}

// The value that begins at `at`, behind the equals sign.
std::optional<QStringView> valueAt(QStringView text, qsizetype at)
{
    if (at < text.size() && text[at] == u'"') {
        const qsizetype close = text.indexOf(u'"', at + 1);
        if (close >= 0)
            return text.sliced(at + 1, close - at - 1);
    }
    const auto *const begin = text.begin() + at;
    const auto *const end = std::find_if(begin, text.end(), [](QChar c) { return c.isSpace(); });
    return begin == end ? std::nullopt : std::optional(QStringView(begin, end));
}

// The word of a-z and _ that ends in front of `end`; null when it is too long to be a key.
QStringView wordBefore(QStringView text, qsizetype end)
{
    qsizetype begin = end;
    while (begin > 0 && (text[begin - 1] == u'_' || (text[begin - 1] >= u'a' && text[begin - 1] <= u'z'))) {
        if (end - --begin > longestKey)
            return {};
    }
    return beginsWord(text, begin) ? text.sliced(begin, end - begin) : QStringView();
}

std::optional<qint64> asInteger(QStringView value)
{
    const bool isSigned = value.startsWith(u'+') || value.startsWith(u'-');
    const QStringView digits = value.sliced(isSigned ? 1 : 0);
    const bool decimal = std::ranges::all_of(digits, [](QChar c) { return c >= u'0' && c <= u'9'; });
    bool fits = false;
    const qint64 number = decimal ? value.toLongLong(&fits) : 0;
    return fits ? std::optional(number) : std::nullopt;
}

std::optional<bool> asBoolean(QStringView value)
{
    const QString lowered = value.toString().toLower();
    if (lowered == u"true")
        return true;
    if (lowered == u"false")
        return false;
    return std::nullopt;
}

void store(QStringView value, const Target &target, Metadata &into)
{
    struct Assign {
        QStringView value;
        Metadata &into;
        void operator()(std::optional<QString> Metadata::*text) const { into.*text = value.toString(); }
        void operator()(std::optional<qint64> Metadata::*number) const { into.*number = asInteger(value); }
        void operator()(std::optional<bool> Metadata::*flag) const { into.*flag = asBoolean(value); }
    };
    std::visit(Assign{value, into}, target);
}

} // namespace

VeranoxRuntimeLogMetadata VeranoxRuntimeLogMetadataParser::parse(QStringView text)
{
    Metadata metadata;
    bool found[keyCount]{};
    for (qsizetype equals = text.indexOf(u'='); equals >= 0; equals = text.indexOf(u'=', equals + 1)) {
        const QStringView word = wordBefore(text, equals);
        const auto *const key = word.isEmpty() ? std::end(keys) : std::ranges::find(keys, word, &Key::name);
        if (key == std::end(keys) || found[key - keys])
            continue;
        if (const auto value = valueAt(text, equals + 1)) {
            found[key - keys] = true;
            store(*value, key->target, metadata);
        }
    }
    if (metadata.level)
        metadata.level = metadata.level->toLower();
    return metadata;
}

std::optional<QString> VeranoxRuntimeLogMetadataParser::field(QStringView name, QStringView text)
{
    const QString key = name.toString() + u'=';
    for (qsizetype at = text.indexOf(key); at >= 0; at = text.indexOf(key, at + 1)) {
        if (!beginsWord(text, at))
            continue;
        if (const auto value = valueAt(text, at + key.size()))
            return value->toString();
    }
    return std::nullopt;
}

std::optional<qint64> VeranoxRuntimeLogMetadataParser::intField(QStringView name, QStringView text)
{
    const auto value = field(name, text);
    return value ? asInteger(*value) : std::nullopt;
}

std::optional<bool> VeranoxRuntimeLogMetadataParser::boolField(QStringView name, QStringView text)
{
    const auto value = field(name, text);
    return value ? asBoolean(*value) : std::nullopt;
}
