#include "Platform/Platform.h"

namespace {

// A Linux desktop shows no dock icon for a process without windows, and ends none for being idle.
class NothingToAsk final : public ProcessActivity {
    void becomeAgent() override { }
    void begin(const QString & /*reason*/) override { }
    void end() override { }
};

} // namespace

std::unique_ptr<ProcessActivity> platform::makeProcessActivity()
{
    return std::make_unique<NothingToAsk>();
}
