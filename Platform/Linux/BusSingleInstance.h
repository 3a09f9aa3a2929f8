#pragma once
#include "Platform/SingleInstance.h"
#include <QDBusConnection>
#include <chrono>

// One process per session bus: the owner of a well-known name, which the bus takes back when the process ends however
// it ends. The second one calls the interface org.freedesktop.Application, as a desktop does that starts an
// application.
class BusSingleInstance : public SingleInstance {
    Q_OBJECT

public:
    static constexpr QLatin1StringView service{"app.veranox.Menu"};
    static constexpr QLatin1StringView path{"/app/veranox/Menu"};

    // How long a second launch waits for the first to answer; the first may still be on its way up.
    static constexpr std::chrono::milliseconds answerTimeout{5000};

    explicit BusSingleInstance(QDBusConnection bus, std::chrono::milliseconds timeout = answerTimeout);
    ~BusSingleInstance() override;

    Outcome acquire() override;

private:
    enum class Answer { given, noSuchProcess, none };
    Answer callOther() const;

    QDBusConnection m_bus;
    std::chrono::milliseconds m_timeout;
};
