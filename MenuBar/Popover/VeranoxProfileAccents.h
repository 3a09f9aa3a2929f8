#pragma once
#include "API/Records/VeranoxProfile.h"
#include <QHash>
#include <QList>

// The colour of each profile, for what belongs to it.
class VeranoxProfileAccents {
public:
    explicit VeranoxProfileAccents(const QList<VeranoxProfile> &profiles)
    {
        for (const VeranoxProfile &profile : profiles)
            m_byName.insert(profile.name, profile.profileAccentColor());
    }

    // The identifier of the colour; empty for a profile that is gone.
    QString of(const QString &profile) const { return m_byName.value(profile); }

private:
    QHash<QString, QString> m_byName;
};
