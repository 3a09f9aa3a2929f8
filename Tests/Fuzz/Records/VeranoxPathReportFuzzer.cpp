#include "API/Records/VeranoxPathReport.h"
#include "Tests/Fuzz/Records/RecordFuzzer.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    fuzz::decode<VeranoxPathReport>(data, size);
    return 0;
}
