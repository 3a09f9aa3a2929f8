#include "Platform/macOS/ServiceLoginItem.h"
#import <ServiceManagement/ServiceManagement.h>

namespace {

std::expected<void, QString> outcome(BOOL done, NSError *error)
{
    if (done)
        return {};
    return std::unexpected(QString::fromNSString(error.localizedDescription));
}

} // namespace

bool ServiceLoginItem::isEnabled() const
{
    return SMAppService.mainAppService.status == SMAppServiceStatusEnabled;
}

std::expected<void, QString> ServiceLoginItem::add()
{
    NSError *error = nil;
    const BOOL done = [SMAppService.mainAppService registerAndReturnError:&error];
    return outcome(done, error);
}

std::expected<void, QString> ServiceLoginItem::remove()
{
    NSError *error = nil;
    const BOOL done = [SMAppService.mainAppService unregisterAndReturnError:&error];
    return outcome(done, error);
}
