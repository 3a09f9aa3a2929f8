#include "Platform/Platform.h"

std::unique_ptr<StatusService> platform::makeStatusService(std::function<QStringList()> /*describe*/)
{
    return nullptr; // no session bus that a terminal could ask over
}

std::optional<QStringList> platform::askForStatus()
{
    return std::nullopt;
}
