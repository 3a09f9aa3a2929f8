#pragma once
#include <QObject>
#include <QStringList>
#include <functional>
#include <memory>
#include <optional>

// Lets a terminal ask the running application what it knows, for as long as it lives. Main thread only.
class StatusService : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;
};

namespace platform {

// Asks the running application, waiting 5 seconds at most. Nothing when none runs or none can be asked.
std::optional<QStringList> askForStatus();

} // namespace platform
