#pragma once
#include "MenuBar/Popover/VeranoxRowOperations.h"
#include <QString>
#include <QUrl>
#include <functional>

// What the popover asks of its surroundings. All are there unless said otherwise.
struct VeranoxMenuActions {
    std::function<void()> dismissMenu;
    std::function<void()> requestQuit;
    std::function<void(const QString &)> copyText; // to the clipboard
    std::function<void(const QUrl &)> openAddress; // in the person's browser
    VeranoxRowOperations tunnels; // absent: tunnels are shown, and that is all
    VeranoxRowOperations publications; // likewise
};
