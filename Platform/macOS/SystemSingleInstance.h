#pragma once
#include "Platform/SingleInstance.h"

// macOS itself opens a bundle once and brings the running one forward.
class SystemSingleInstance : public SingleInstance {
    Q_OBJECT

public:
    using SingleInstance::SingleInstance;

    Outcome acquire() override { return Outcome::first; }
};
