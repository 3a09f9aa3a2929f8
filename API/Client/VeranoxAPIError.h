#pragma once
#include "Base/Failures/VeranoxError.h"

// The service refused a request and says why. Its text is shown as it stands, or matched by the caller.
class VeranoxAPIError final : public VeranoxError {
public:
    explicit VeranoxAPIError(QString text) : error(std::move(text)) { }

    QString localizedDescription() const override { return error; }

    const QString error;
};
