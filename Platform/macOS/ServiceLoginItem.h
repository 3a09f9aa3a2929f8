#pragma once
#include "System/LoginItem.h"

// The application itself as a login item of the system.
class ServiceLoginItem final : public LoginItem {
public:
    bool isEnabled() const override;
    std::expected<void, QString> add() override;
    std::expected<void, QString> remove() override;
};
