#pragma once
#include <QByteArray>
#include <QList>

// The one decoder of what the service sends. `Value` is a record or a QList of records. Throws DecodingError for
// anything that is not such a value; accepts any bytes. Any thread.
template <class Value> Value decodeRecord(const QByteArray &json);

// The record as compact JSON, its keys in the order of its field table. Any thread.
template <class Record> QByteArray encodeRecord(const Record &record);

// Both are defined in Base/Json/Codec.h and instantiated where a record's field table stands, so that users of a record
// do not compile its table.
