#include "API/Records/VeranoxProfileAction.h"
#include "Tests/Fuzz/Records/RecordFuzzer.h"

// Whatever address is found in an answer, it is one that may be opened.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const auto action = fuzz::decoded<VeranoxProfileAction>(data, size);
    const auto address = action ? action->authURL() : std::nullopt;
    fuzz::require(!address || (address->scheme() == QStringLiteral("https") && !address->host().isEmpty()));
    return 0;
}
