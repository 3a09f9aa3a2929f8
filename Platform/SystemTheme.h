#pragma once
#include <QColor>
#include <QObject>
#include <optional>

// How the desktop is dressed. Main thread only.
class SystemTheme : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

    // Whether windows are dark.
    virtual bool isDark() const = 0;

    // Whether the panel or menu bar that holds the status item is dark.
    virtual bool isPanelDark() const = 0;

    // Whether the system colours mask icons of the panel itself; otherwise they are drawn in panelForeground().
    virtual bool colorsTemplateImages() const = 0;

    // Whether the person wants nothing to move on the screen that need not.
    virtual bool prefersReducedMotion() const { return false; }

    // The colour that the person chose to mark what is in use with; nothing where the desktop has none.
    virtual std::optional<QColor> accent() const { return std::nullopt; }

    // The colour of text and symbols on the panel.
    QColor panelForeground() const;

Q_SIGNALS:
    // One of the answers above has changed.
    void changed();
};
