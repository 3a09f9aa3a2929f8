#include "API/Records/VeranoxEditableConfig.h"
#include "Tests/Fuzz/Records/RecordFuzzer.h"

// Whatever can be read is written so that it reads the same.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    if (const auto document = fuzz::decoded<VeranoxEditableConfig>(data, size))
        fuzz::require(decodeRecord<VeranoxEditableConfig>(encodeRecord(*document)) == *document);
    return 0;
}
