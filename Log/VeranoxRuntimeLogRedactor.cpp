#include "Log/VeranoxRuntimeLogRedactor.h"
#include <QRegularExpression>
#include <QStringMatcher>
#include <array>

using namespace Qt::StringLiterals;

namespace {

using Option = QRegularExpression::PatternOption;

// A pattern in which %1, inside of brackets, stands for the white space of Unicode; \s alone knows only that of ASCII.
QRegularExpression pattern(const QString &text, Option option = Option::NoPatternOption)
{
    return QRegularExpression(text.arg(u"\\t-\\r\\x{85}\\p{Z}"_s), option);
}

struct Rule {
    bool (*possible)(const QString &text); // cheap, and true wherever the pattern matches
    QRegularExpression pattern;
    QString replacement;
};

constexpr qsizetype shortestSecret = 16;

bool isSecretCharacter(QChar c)
{
    return (c >= u'0' && c <= u'9') || (c >= u'a' && c <= u'f') || (c >= u'A' && c <= u'F') || c == u'-';
}

bool hasSecretShape(QStringView text)
{
    // A run of this length covers one of these places: only they are looked at, and the runs that cover them.
    for (qsizetype place = shortestSecret - 1; place < text.size(); place += shortestSecret) {
        if (!isSecretCharacter(text[place]))
            continue;
        qsizetype begin = place;
        while (begin > 0 && place - begin < shortestSecret && isSecretCharacter(text[begin - 1]))
            --begin;
        qsizetype end = place + 1;
        while (end < text.size() && end - begin < shortestSecret && isSecretCharacter(text[end]))
            ++end;
        if (end - begin >= shortestSecret)
            return true;
    }
    return false;
}

bool mayNameSecret(const QString &text)
{
    static const QStringMatcher token(u"token"_s, Qt::CaseInsensitive);
    static const QStringMatcher machine(u"machine"_s, Qt::CaseInsensitive);
    return hasSecretShape(text) && (token.indexIn(text) >= 0 || machine.indexIn(text) >= 0);
}

bool mayHoldLoginAddress(const QString &text)
{
    return text.contains(u"/a/");
}

bool mayHoldQuery(const QString &text)
{
    return text.contains(u'=') && (text.contains(u'?') || text.contains(u'&'));
}

bool mayHoldVersionKey(const QString &text)
{
    return text.contains(u"redaction_version=");
}

// In the order in which they are applied, each to the result of the one before. Every repetition that can be long is
// possessive: no text makes a pattern go back over what it has read.
const std::array<Rule, 4> &rules()
{
    static const std::array<Rule, 4> all{{
        {mayNameSecret,
            pattern(uR"re((X-Veranox-Token|control[_\- ]?token|machine[_\- ]?id)(["'=:%1]++)[0-9a-f\-]{16,}+)re"_s,
                Option::CaseInsensitiveOption),
            u"\\1\\2[REDACTED]"_s},
        {mayHoldLoginAddress, QRegularExpression(u"https://login\\.tailscale\\.com/a/[A-Za-z0-9_\\-]++"_s),
            u"[TAILSCALE AUTH URL REDACTED]"_s},
        {mayHoldQuery, pattern(u"([?&](?:token|key|auth)=)[^&%1]++"_s, Option::CaseInsensitiveOption),
            u"\\1[REDACTED]"_s},
        {mayHoldVersionKey, pattern(u"(^|[%1])redaction_version="_s), u"\\1event_redaction_version="_s},
    }};
    return all;
}

// The regular expressions refuse a text with half a surrogate pair, and a secret beside it would stay; and the log's
// file would not be Unicode any more.
QString wellFormed(const QString &text)
{
    return text.isValidUtf16() ? text : QString::fromUtf8(text.toUtf8());
}

} // namespace

QString VeranoxRuntimeLogRedactor::redact(const QString &text)
{
    QString redacted = wellFormed(text);
    for (const Rule &rule : rules()) {
        if (rule.possible(redacted))
            redacted.replace(rule.pattern, rule.replacement);
    }
    return redacted;
}
