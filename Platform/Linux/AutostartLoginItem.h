#pragma once
#include "System/LoginItem.h"
#include <QString>

// A desktop entry in the user's autostart folder. The desktop's own settings may switch it off by a key of it, and then
// it counts as not enabled.
class AutostartLoginItem final : public LoginItem {
public:
    // The entry's path and the program that it starts.
    AutostartLoginItem(QString entryPath, QString program);

    bool isEnabled() const override;
    std::expected<void, QString> add() override;
    std::expected<void, QString> remove() override;

    // autostart/veranox.desktop in the user's folder for configuration, where the desktop looks.
    static QString defaultEntryPath();

private:
    QString m_entryPath;
    QString m_program;
};
