#pragma once
#include "Service/Page/Html.h"
#include "Service/Page/StateWords.h"
#include "Service/Page/StatusPage.h"
#include <cstddef>

namespace veranox {

/// How many entries fare how.
struct StatusTally {
    std::size_t total = 0;
    std::size_t good = 0;
    std::size_t busy = 0;
    std::size_t attention = 0;
    std::size_t failed = 0;

    void count(Tone tone);
    std::size_t needsPerson() const { return attention + failed; }
    StatusTally operator+(const StatusTally &other) const;
};

/// One section of the page.
struct StatusTable {
    Html html;
    StatusTally tally;
};

struct StatusTables {
    StatusTable profiles;
    StatusTable tunnels;
    StatusTable publications;

    StatusTally all() const { return profiles.tally + tunnels.tally + publications.tally; }
};

StatusTables statusTables(const StatusOverview &overview);

/// The word with a mark before it that differs in shape as well as in colour.
Html stateMark(const StateWords &state);

} // namespace veranox
