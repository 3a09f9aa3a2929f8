#pragma once
#include "Tests/Service/Support/ApiBed.h"
#include <string>

namespace veranox::test {

/// One request that is refused, and how.
struct RefusedRequest {
    std::string method;
    std::string target;
    std::string body;
    unsigned status;
    std::string sentence;
};

/// Asks, and expects that refusal, that nothing changed on disk and that the traffic was told of nothing.
void expectRefused(ApiBed &bed, const RefusedRequest &refused);

/// Which sentence the application makes of a publication's refusal, by the words in it: its table's row, from 1; 14
/// when it shows the refusal as it is.
int publicationRow(const std::string &sentence);
/// The same for a tunnel's; 4 when it is shown as it is.
int tunnelRow(const std::string &sentence);
/// The same for that of a configuration; 6 when it is shown as it is.
int configurationRow(const std::string &sentence);

} // namespace veranox::test
