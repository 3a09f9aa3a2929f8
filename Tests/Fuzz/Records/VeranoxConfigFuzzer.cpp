#include "API/Records/VeranoxConfig.h"
#include "API/Values/VeranoxLoopback.h"
#include "Tests/Fuzz/Records/RecordFuzzer.h"

// Whatever the service sends, the PAC address is one on loopback in its normal form.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    if (const auto config = fuzz::decoded<VeranoxConfig>(data, size)) {
        const QString &address = config->router.pacListen;
        fuzz::require(VeranoxLoopback::normalizedAddress(address, {}) == address);
    }
    return 0;
}
