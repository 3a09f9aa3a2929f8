#pragma once
#include <QByteArray>
#include <QString>
#include <optional>

// The text; absent when a single byte of it is not UTF-8.
std::optional<QString> decodedUtf8(const QByteArray &bytes);

// How many bytes at the end begin a character without finishing it: 0 to 3.
qsizetype unfinishedUtf8Tail(const QByteArray &bytes);
