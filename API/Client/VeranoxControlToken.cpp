#include "API/Client/VeranoxControlToken.h"
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>
#include <QStringDecoder>
#include <algorithm>

using namespace Qt::StringLiterals;

namespace {
constexpr qint64 maximumTokenFileSize = 4096; // bytes; a header line has to carry it
}

QString defaultControlTokenPath()
{
    const QString support = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
    return support.isEmpty() ? QString() : support + u"/Veranox/control.token"_s;
}

std::optional<QString> readControlToken(const QString &path)
{
    if (!QFileInfo(path).isFile()) // opening a named pipe would wait for its writer
        return std::nullopt;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return std::nullopt;
    const QByteArray content = file.read(maximumTokenFileSize + 1);
    if (content.size() > maximumTokenFileSize)
        return std::nullopt;
    // Stateless: the file is all there is, and a character that it cuts is no beginning of another one.
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    const QString text = decoder(content);
    if (decoder.hasError())
        return std::nullopt;
    const QString token = text.trimmed();
    const bool fitsHeader = std::ranges::none_of(token, [](QChar c) { return c.category() == QChar::Other_Control; });
    return !token.isEmpty() && fitsHeader ? std::optional(token) : std::nullopt;
}
