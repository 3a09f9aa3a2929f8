#pragma once
#include <QWidget>

// Tells when the palette of the application changes. Qt sends that event to widgets only, so this is one that is never
// shown. Main thread only.
class PaletteWatcher : public QWidget {
    Q_OBJECT

public:
    PaletteWatcher();

    // Whether text on a window is lighter than the window.
    static bool isDark();

Q_SIGNALS:
    void paletteChanged();

protected:
    bool event(QEvent *event) override;
};
