#pragma once
#include "System/UserDefaults.h"
#include <QJsonObject>

// User defaults in one flat JSON object. Each change replaces the file as a whole, so that a reader never sees half of
// it. A file that cannot be understood is set aside under another name and never overwritten.
class JsonUserDefaults final : public UserDefaults {
public:
    // Reads the file; a missing one is an empty object.
    explicit JsonUserDefaults(QString path);

    QVariant value(const QString &key) const override;
    void setValue(const QString &key, const QVariant &value) override;
    QString problem() const override { return m_problem; }

    // veranox/defaults.json in the user's folder for configuration.
    static QString defaultPath();

private:
    void load();
    void giveUp(const QString &reason);
    void setAside(const QString &reason);
    bool save();

    QString m_path;
    QJsonObject m_values;
    QString m_problem;
    bool m_isWritable = true; // false when a damaged file could not be moved away: it must not be overwritten
};
