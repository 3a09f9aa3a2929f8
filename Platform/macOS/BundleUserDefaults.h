#pragma once
#include "System/UserDefaults.h"

// The system's user defaults of the application.
class BundleUserDefaults final : public UserDefaults {
public:
    QVariant value(const QString &key) const override;
    void setValue(const QString &key, const QVariant &value) override;
    QString problem() const override { return {}; } // the system reports none
};
