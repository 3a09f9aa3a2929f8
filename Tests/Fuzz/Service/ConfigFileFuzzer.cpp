#include "Service/Config/ConfigDocument.h"
#include "Service/Json/JsonProblem.h"
#include <cstdlib>

using namespace veranox;

/// What was read is written so that it reads the same again, and loses nothing.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    try {
        ConfigDocument document = parseConfig({reinterpret_cast<const char *>(data), size});
        assignTunnelAddresses(document, 43200);
        const std::string text = configFileText(document);
        ConfigDocument again = parseConfig(text);
        if (configFileText(again) != text)
            std::abort();
        for (const auto &[key, value] : document.asRead)
            if (!again.asRead.contains(key))
                std::abort();
        again.asRead = document.asRead;
        if (again != document)
            std::abort();
    } catch (const JsonProblem &problem) {
        if (problem.place.empty() || problem.text.empty())
            std::abort();
    }
    return 0;
}
