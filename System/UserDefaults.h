#pragma once
#include <QString>
#include <QVariant>

// The small settings of one user that belong to the application. Values are bool, qint64 or QString; anything else that
// stands under a key reads as absent. Main thread only.
class UserDefaults {
public:
    UserDefaults() = default;
    UserDefaults(const UserDefaults &) = delete;
    UserDefaults &operator=(const UserDefaults &) = delete;
    virtual ~UserDefaults() = default;

    // The value under key, invalid when there is none.
    virtual QVariant value(const QString &key) const = 0;

    // Keeps value under key, at once. A failure keeps the value for this run and shows in problem().
    virtual void setValue(const QString &key, const QVariant &value) = 0;

    // What went wrong last, as a finished sentence; empty when nothing has.
    virtual QString problem() const = 0;
};
