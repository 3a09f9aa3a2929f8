#pragma once
#include "API/VeranoxError.h"

// An answer that the service does not give: broken HTTP, a body beyond the limit, or a failure without a reason.
class VeranoxBadServerResponse final : public VeranoxError {
public:
    QString localizedDescription() const override;
};
