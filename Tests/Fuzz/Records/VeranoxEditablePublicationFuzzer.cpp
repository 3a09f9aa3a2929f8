#include "API/Records/VeranoxEditablePublication.h"
#include "Tests/Fuzz/Records/RecordFuzzer.h"

// Whatever can be read is written so that it reads the same.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    if (const auto record = fuzz::decoded<VeranoxEditablePublication>(data, size))
        fuzz::require(decodeRecord<VeranoxEditablePublication>(encodeRecord(*record)) == *record);
    return 0;
}
