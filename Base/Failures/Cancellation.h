#pragma once
#include "Base/Failures/LocalizedError.h"

// The waiting job was cancelled. Callers stay silent; the text is for a debugger.
class Cancellation final : public LocalizedError {
public:
    QString localizedDescription() const override;
};
