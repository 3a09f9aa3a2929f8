#pragma once
#include <QString>
#include <QVariantMap>

// The identity of this build, validated, "unknown" wherever the information dictionary says nothing usable.
struct VeranoxAppVersion {
    QString version;
    QString buildNumber;
    QString buildID; // 12 hexadecimal characters, with "-dirty" for a build from changed sources
    QString buildCommit; // 7 to 64 hexadecimal characters, likewise
    QString buildDate;
    QString buildChannel;

    explicit VeranoxAppVersion(const QVariantMap &infoDictionary);

    bool operator==(const VeranoxAppVersion &) const = default;
};
