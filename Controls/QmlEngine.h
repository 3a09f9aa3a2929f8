#pragma once
#include <QUrl>
#include <QVariantMap>
#include <memory>

class SystemTheme;
class QQmlEngine;
class QQuickItem;

// The engine behind every window. It is made when the first window asks for it: an icon that nobody clicks on does not
// pay for it. Main thread only.
class QmlEngine {
public:
    // The theme outlives the engine.
    explicit QmlEngine(SystemTheme &theme);
    ~QmlEngine();
    QmlEngine(const QmlEngine &) = delete;
    QmlEngine &operator=(const QmlEngine &) = delete;

    // The engine, which knows the controls. Every window is drawn by the processor from then on.
    QQmlEngine &engine();
    bool isMade() const { return m_engine != nullptr; }

    // The item that a file of this program describes. The files are part of the program: one that cannot be loaded
    // ends it.
    std::unique_ptr<QQuickItem> create(const QUrl &file, const QVariantMap &properties);

private:
    SystemTheme &m_theme;
    std::unique_ptr<QQmlEngine> m_engine;
};
