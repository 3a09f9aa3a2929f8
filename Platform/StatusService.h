#pragma once
#include <QObject>
#include <QStringList>
#include <functional>
#include <memory>
#include <optional>

// Lets a terminal ask the running application what it knows. Main thread only.
class StatusService : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

    // Answers every question with describe(), for the life of the result. Null where the system has no way to ask.
    static std::unique_ptr<StatusService> publish(std::function<QStringList()> describe);

    // Asks the running application, waiting 5 seconds at most. Nothing when none runs or none can be asked.
    static std::optional<QStringList> ask();
};
