#include "Log/VeranoxProfileNameInference.h"
#include "Log/VeranoxRuntimeLogLine.h"
#include "Log/VeranoxRuntimeLogMetadataParser.h"
#include "Log/VeranoxRuntimeLogRedactor.h"
#include "Tests/Fuzz/Records/RecordFuzzer.h"

using namespace Qt::StringLiterals;

namespace {

using Parser = VeranoxRuntimeLogMetadataParser;

const QString secret = u"d15ea5e0deadbeefd15ea5e0deadbeef"_s;

void checkRedaction(const QString &text)
{
    const QString redacted = VeranoxRuntimeLogRedactor::redact(text);
    fuzz::require(VeranoxRuntimeLogRedactor::redact(redacted) == redacted);
    const QString planted = text + u" control_token="_s + secret + u' ' + text;
    fuzz::require(text.contains(secret) || !VeranoxRuntimeLogRedactor::redact(planted).contains(secret));
}

void checkMetadata(const QString &line)
{
    const VeranoxRuntimeLogMetadata metadata = Parser::parse(line);
    fuzz::require(metadata.operation == Parser::field(u"operation", line));
    fuzz::require(metadata.componentInstanceID == Parser::field(u"component_instance_id", line));
    fuzz::require(metadata.attempt == Parser::intField(u"attempt", line));
    fuzz::require(metadata.retryable == Parser::boolField(u"retryable", line));
}

void checkLines(const QString &text)
{
    static const VeranoxProfileNameInference profiles({u"work"_s, u"a"_s, u"profile"_s});
    for (const QStringView piece : VeranoxRuntimeLogLine::split(text)) {
        const QString line = piece.toString();
        fuzz::require(!line.isEmpty() && line.trimmed() == line);
        const QString cut = VeranoxRuntimeLogLine::truncated(line);
        fuzz::require(cut == line || cut.endsWith(u"[truncated]"));
        checkMetadata(cut);
        const auto name = profiles.inferredProfileName(cut);
        fuzz::require(!name || cut.contains(*name, Qt::CaseInsensitive));
    }
}

} // namespace

// The bytes as UTF-8, and then as code units as they come, halves of surrogate pairs included.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QString text = QString::fromUtf8(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size));
    checkRedaction(text);
    checkLines(text);
    QString units;
    for (std::size_t at = 0; at + 1 < size; at += 2)
        units += QChar(static_cast<char16_t>(data[at] | data[at + 1] << 8));
    checkRedaction(units);
    checkLines(units);
    return 0;
}
