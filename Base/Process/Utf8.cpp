#include "Base/Process/Utf8.h"
#include <QStringDecoder>
#include <algorithm>

namespace {

bool continues(char byte)
{
    return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U;
}

// The length of the character that this byte leads; 1 for one that leads none.
qsizetype announcedLength(char byte)
{
    const auto lead = static_cast<unsigned char>(byte);
    if (lead >= 0xF0U)
        return 4;
    if (lead >= 0xE0U)
        return 3;
    return lead >= 0xC0U ? 2 : 1;
}

} // namespace

std::optional<QString> decodedUtf8(const QByteArray &bytes)
{
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    QString text = decoder(bytes);
    if (decoder.hasError())
        return std::nullopt;
    return text;
}

qsizetype unfinishedUtf8Tail(const QByteArray &bytes)
{
    const qsizetype longestTail = std::min<qsizetype>(3, bytes.size());
    for (qsizetype length = 1; length <= longestTail; ++length) {
        const char byte = bytes.at(bytes.size() - length);
        if (!continues(byte))
            return announcedLength(byte) > length ? length : 0;
    }
    return 0;
}
