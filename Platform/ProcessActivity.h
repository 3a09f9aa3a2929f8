#pragma once
#include <QString>
#include <memory>

// How the system treats this process while nobody looks at it. Main thread only.
class ProcessActivity {
public:
    ProcessActivity() = default;
    ProcessActivity(const ProcessActivity &) = delete;
    ProcessActivity &operator=(const ProcessActivity &) = delete;
    virtual ~ProcessActivity() = default;

    // No dock icon and no menu bar of its own, where a system has such things.
    virtual void becomeAgent() = 0;

    // From here on the system does not end the process because it looks idle. A second call does nothing.
    virtual void begin(const QString &reason) = 0;

    // Gives that up again; harmless without begin().
    virtual void end() = 0;
};
