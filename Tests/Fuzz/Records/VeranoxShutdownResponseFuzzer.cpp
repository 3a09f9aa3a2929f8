#include "API/Records/VeranoxShutdownResponse.h"
#include "Tests/Fuzz/Records/RecordFuzzer.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    fuzz::decode<VeranoxShutdownResponse>(data, size);
    return 0;
}
