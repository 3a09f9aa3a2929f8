#pragma once
#include "System/VeranoxAppVersion.h"
#include <QString>
#include <QVariantMap>

// What the first line of a session tells about the program and the machine.
struct VeranoxSessionIdentity {
    VeranoxAppVersion build;
    QString bundleIdentifier; // "unknown" when the bundle has none
    QString systemVersion; // major.minor.patch: of macOS, elsewhere of the kernel
    QString systemName; // "macOS", elsewhere the kernel's
    QString architecture; // the processor that the program was built for

    // The identity of this program on this machine, with the build as its information dictionary names it.
    static VeranoxSessionIdentity of(const QVariantMap &infoDictionary);

    bool operator==(const VeranoxSessionIdentity &) const = default;
};
