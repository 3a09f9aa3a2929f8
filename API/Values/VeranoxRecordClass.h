#pragma once
#include "API/Records/VeranoxProfile.h"
#include "API/Records/VeranoxPublication.h"
#include "API/Records/VeranoxTunnel.h"

namespace VeranoxRecords {
Q_NAMESPACE

// Where a record stands, in one word; every record is in exactly one class.
enum class Class {
    disabled, // switched off; whatever else it says does not count
    blocked, // a publication that waits for its owner's decision: it has not failed
    failed, // needs a person
    ready,
    starting // will end up in one of the others by itself
};
Q_ENUM_NS(Class)

} // namespace VeranoxRecords

using VeranoxRecordClass = VeranoxRecords::Class;

VeranoxRecordClass classOf(const VeranoxProfile &profile); // failed, starting or ready
VeranoxRecordClass classOf(const VeranoxTunnel &tunnel); // all but blocked
VeranoxRecordClass classOf(const VeranoxPublication &publication);

// Whether a person has to see to the record.
bool needsAttention(const auto &record)
{
    return classOf(record) == VeranoxRecordClass::failed;
}
