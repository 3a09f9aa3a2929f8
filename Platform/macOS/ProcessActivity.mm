#include "Platform/Platform.h"
#import <AppKit/AppKit.h>

namespace {

class AgentActivity final : public ProcessActivity {
public:
    ~AgentActivity() override { end(); }

    void becomeAgent() override
    {
        [NSApplication.sharedApplication setActivationPolicy:NSApplicationActivationPolicyAccessory];
    }

    void begin(const QString &reason) override
    {
        if (m_token == nil)
            m_token = [NSProcessInfo.processInfo beginActivityWithOptions:NSActivityAutomaticTerminationDisabled
                                                                   reason:reason.toNSString()];
    }

    void end() override
    {
        if (m_token != nil)
            [NSProcessInfo.processInfo endActivity:m_token];
        m_token = nil;
    }

private:
    id<NSObject> m_token = nil;
};

} // namespace

std::unique_ptr<ProcessActivity> platform::makeProcessActivity()
{
    return std::make_unique<AgentActivity>();
}
