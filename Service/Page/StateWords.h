#pragma once
#include "Service/Nodes/NodeStatus.h"
#include "Service/Publications/PublicationRecord.h"
#include "Service/Tunnels/TunnelRecord.h"
#include <string>

namespace veranox {

/// How far something needs a person.
enum class Tone {
    good,
    busy, // comes up by itself
    attention, // waits for a person
    failed,
    off, // switched off on purpose
};

/// A state in words: one word or two for all of it, and what there is to say besides.
struct StateWords {
    Tone tone = Tone::off;
    std::string word;
    std::string detail; // a sentence or the error; empty when the word says it all

    bool operator==(const StateWords &) const = default;
};

StateWords wordsFor(const NodeStatus &status);
StateWords wordsFor(const TunnelSettings &settings, const TunnelStatus &status);
StateWords wordsFor(const PublicationSettings &settings, const PublicationStatus &status);

} // namespace veranox
