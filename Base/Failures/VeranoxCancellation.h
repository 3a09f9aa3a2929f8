#pragma once
#include "Base/Failures/VeranoxError.h"

// The waiting job was cancelled. Callers stay silent; the text is for a debugger.
class VeranoxCancellation final : public VeranoxError {
public:
    QString localizedDescription() const override;
};
