#include "API/Records/VeranoxFeedback.h"
#include "API/Records/VeranoxSaveConfigResponse.h"
#include "Tests/Fuzz/Records/RecordFuzzer.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    fuzz::decode<VeranoxSaveConfigResponse>(data, size);
    fuzz::decode<VeranoxFeedbackResult>(data, size);
    return 0;
}
