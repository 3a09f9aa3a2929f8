#pragma once
#include <QString>

namespace platform {

// Where this application's own resources lie, the service's executable among them: an absolute path without dots,
// computed from the place of the running executable. Needs the QCoreApplication.
QString resourceDirectory();

} // namespace platform
