#include "Tests/Service/Support/ApiBed.h"
#include <cstdlib>
#include <sstream>

using namespace veranox;

/// The lines of the input are method, target, host, origin and token of a request. Without the token, which no input
/// can guess, nothing but a read from this computer may succeed.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static test::ApiBed bed;
    std::istringstream lines(std::string(reinterpret_cast<const char *>(data), size));
    ControlRequest request;
    std::getline(lines, request.method);
    std::getline(lines, request.target);
    for (std::vector<std::string> *values : {&request.hosts, &request.origins, &request.tokens})
        if (std::string line; std::getline(lines, line) && !line.empty())
            values->push_back(line);
    const ControlAnswer answer = test::awaitAnswer(bed.api(), request);
    if (answer.then == ControlAnswer::Then::endService)
        std::abort();
    if (answer.status == 200 && (!request.isRead() || request.hosts.size() != 1))
        std::abort();
    if (answer.status != 200 && !answer.body.at("error").is_string())
        std::abort();
    return 0;
}
