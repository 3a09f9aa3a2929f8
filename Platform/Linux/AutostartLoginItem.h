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

    // $XDG_CONFIG_HOME/autostart/veranox.desktop.
    static QString defaultEntryPath();

private:
    QString m_entryPath;
    QString m_program;
};
