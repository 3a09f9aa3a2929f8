#pragma once
#include "Base/Failures/VeranoxError.h"

// An answer that the service does not give: one beyond the size limits, or a failure without a reason.
class VeranoxBadServerResponse final : public VeranoxError {
public:
    QString localizedDescription() const override;
};
