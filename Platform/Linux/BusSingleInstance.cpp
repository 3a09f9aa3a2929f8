#include "Platform/Linux/BusSingleInstance.h"

#include "Platform/Linux/ApplicationAdaptor.h"
#include <QDBusConnectionInterface>
#include <QDBusMessage>

using namespace Qt::StringLiterals;

namespace {

// The owner of the name may end between our two questions; then the name is free. More than a few such turns mean that
// something keeps taking the name without staying.
constexpr int maximumAttempts = 3;

// What a desktop passes on so that the window which opens may take the focus.
QVariantMap platformData()
{
    QVariantMap data;
    const auto pass = [&data](const QString &key, const char *variable) {
        if (const QString value = qEnvironmentVariable(variable); !value.isEmpty())
            data[key] = value;
    };
    pass(u"activation-token"_s, "XDG_ACTIVATION_TOKEN");
    pass(u"desktop-startup-id"_s, "DESKTOP_STARTUP_ID");
    return data;
}

} // namespace

BusSingleInstance::BusSingleInstance(QDBusConnection bus, std::chrono::milliseconds timeout)
    : m_bus(std::move(bus)),
      m_timeout(timeout)
{
    new ApplicationAdaptor(this);
}

BusSingleInstance::~BusSingleInstance()
{
    m_bus.unregisterService(service);
    m_bus.unregisterObject(path);
}

SingleInstance::Outcome BusSingleInstance::acquire()
{
    // The object comes first: whoever sees the name can call it.
    if (!m_bus.isConnected() || !m_bus.registerObject(path, this, QDBusConnection::ExportAdaptors))
        return Outcome::unguarded;

    for (int attempt = 0; attempt < maximumAttempts; ++attempt) {
        const auto reply = m_bus.interface()->registerService(service, QDBusConnectionInterface::DontQueueService);
        if (!reply.isValid())
            return Outcome::unguarded;
        if (reply == QDBusConnectionInterface::ServiceRegistered)
            return Outcome::first;
        switch (callOther()) {
        case Answer::given:
            return Outcome::handedOver;
        case Answer::none:
            return Outcome::notAnswered;
        case Answer::noSuchProcess:
            break;
        }
    }
    return Outcome::notAnswered;
}

BusSingleInstance::Answer BusSingleInstance::callOther() const
{
    auto call = QDBusMessage::createMethodCall(service, path, u"org.freedesktop.Application"_s, u"Activate"_s);
    call << platformData();
    call.setAutoStartService(false);
    const QDBusMessage reply = m_bus.call(call, QDBus::Block, static_cast<int>(m_timeout.count()));
    if (reply.type() == QDBusMessage::ReplyMessage)
        return Answer::given;
    return QDBusError(reply).type() == QDBusError::ServiceUnknown ? Answer::noSuchProcess : Answer::none;
}
