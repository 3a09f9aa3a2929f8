#pragma once
#include <QByteArray>
#include <QStringList>

// What a process said at one time, as lines for a log: split at every kind of line end, trimmed, without empty ones.
// Bytes that are not UTF-8 make no line at all, whatever stands around them.
QStringList veranoxOutputLines(const QByteArray &output);
