#pragma once
#include "Platform/Appearance.h"
#include "Platform/StatusItem.h"
#include <memory>

// What this system offers behind the seams. The folder of the system implements it; nothing else knows which system it
// is. Each call makes a new object, for the main thread, and needs the QApplication.
namespace platform {

std::unique_ptr<StatusItem> makeStatusItem();
std::unique_ptr<Appearance> makeAppearance();

} // namespace platform
