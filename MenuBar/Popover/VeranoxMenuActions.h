#pragma once
#include <QString>
#include <QUrl>
#include <functional>

// What the popover asks of its surroundings. All are there.
struct VeranoxMenuActions {
    std::function<void()> dismissMenu;
    std::function<void()> requestQuit;
    std::function<void(const QString &)> copyText; // to the clipboard
    std::function<void(const QUrl &)> openAddress; // in the person's browser
};
