#include "Service/Json/JsonProblem.h"
#include "Service/Nodes/Lab/LabConfig.h"
#include "Service/Nodes/Lab/LabEngine.h"
#include "Service/Nodes/Lab/LabFile.h"
#include "Service/Nodes/Lab/LabGate.h"
#include "Tests/Service/Support/FakeTime.h"
#include <cstdlib>

namespace {

using namespace veranox;

/// A network that was accepted has a state for everything at every time.
void useEverything(const LabNetwork &lab, const ConfigDocument &document, const LabEngine &engine)
{
    for (const auto &[name, profile] : lab.profiles)
        if (const NodeStatus status = engine.profileStatus(name); status.ok != (status.backendState == "Running"))
            std::abort();
    const LabGate gate(engine);
    for (const auto &[name, tunnel] : document.tunnels)
        if (gate.tunnelStatus(name, tunnel).state.empty())
            std::abort();
    for (const auto &[name, publication] : document.publications)
        if (gate.publicationStatus(name, publication, "node").state.empty())
            std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    try {
        const LabNetwork lab = parseLab({reinterpret_cast<const char *>(data), size});
        ConfigDocument document;
        addLabConfig(lab, document);
        if (addLabConfig(lab, document))
            std::abort();
        test::FakeTime time;
        const LabEngine engine(lab, time);
        for (int hours = 0; hours < 60; hours += 20) {
            useEverything(lab, document, engine);
            time.pass(std::chrono::hours(20));
        }
    } catch (const JsonProblem &problem) {
        if (problem.place.empty() || problem.text.empty())
            std::abort();
    }
    return 0;
}
