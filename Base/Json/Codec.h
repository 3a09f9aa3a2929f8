#pragma once
#include "Base/Json/DecodingError.h"
#include "Base/Json/Json.h"
#include "Base/Json/Reading.h"
#include "Base/Json/Writing.h"

// What a file with a field table includes. It ends with lines such as
//
//     template Fruit decodeRecord(const QByteArray &);
//     template QList<Fruit> decodeRecord(const QByteArray &);
//     template QByteArray encodeRecord(const Fruit &);
template <class Value> Value decodeRecord(const QByteArray &text)
{
    const json::Document document(text);
    Value value;
    if (const auto outcome = json::read(document.root(), value); !outcome)
        throw DecodingError(outcome.error().place, outcome.error().expected, outcome.error().found);
    return value;
}

template <class Record> QByteArray encodeRecord(const Record &record)
{
    QByteArray out;
    json::write(out, record);
    return out;
}
