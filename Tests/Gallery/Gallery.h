#pragma once
#include "Controls/QmlEngine.h"
#include "Tests/Support/FixedTheme.h"
#include <QQuickItem>
#include <QQuickWindow>
#include <QString>

// Draws one screen after the other into PNG files of a folder, each in a light and a dark window. The scale is the one
// that QT_SCALE_FACTOR names, and stands in the name of the file.
class Gallery {
public:
    explicit Gallery(QString folder);

    bool isDark() const { return m_theme.isDark(); }
    void setDark(bool dark) { m_theme.setDark(dark); }
    QmlEngine &engine() { return m_engine; }

    // Draws an item of the size that it wants, after so many milliseconds.
    void draw(const QString &name, std::unique_ptr<QQuickItem> item, int after = 0);

private:
    QString m_folder;
    FixedTheme m_theme{false};
    QmlEngine m_engine{m_theme};
};
