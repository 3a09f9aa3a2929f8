#pragma once
#include <QGuiApplication>
#include <QJsonArray>
#include <QJsonObject>
#include <qpa/qplatformnativeinterface.h>

// Unplugs every screen of the offscreen platform for as long as it lives, and plugs them in again.
class NoScreens {
public:
    NoScreens() : m_before(configuration())
    {
        QJsonObject without = m_before;
        without[QStringLiteral("screens")] = QJsonArray();
        configure(without);
    }
    ~NoScreens() { configure(m_before); }
    NoScreens(const NoScreens &) = delete;
    NoScreens &operator=(const NoScreens &) = delete;

private:
    using Platform = QPlatformNativeInterface;

    static Platform *platform() { return QGuiApplication::platformNativeInterface(); }

    // As Qt's own tests ask the platform plugin.
    template <class Function> static Function *resource(const char *name)
    {
        return reinterpret_cast<Function *>(platform()->nativeResourceForIntegration(name));
    }
    static QJsonObject configuration() { return resource<QJsonObject(Platform *)>("configuration")(platform()); }
    static void configure(const QJsonObject &wanted)
    {
        resource<void(const QJsonObject &, Platform *)>("setConfiguration")(wanted, platform());
    }

    QJsonObject m_before;
};
