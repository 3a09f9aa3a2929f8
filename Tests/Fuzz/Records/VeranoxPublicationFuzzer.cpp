#include "API/Records/VeranoxPublication.h"
#include "Tests/Fuzz/Records/RecordFuzzer.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    fuzz::decode<QList<VeranoxPublication>>(data, size);
    return 0;
}
