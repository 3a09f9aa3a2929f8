#include "Platform/Platform.h"
#include <QDBusConnection>
#include <QDBusError>
#include <QDBusMessage>
#include <QDBusReply>

using namespace Qt::StringLiterals;

namespace {

QDBusMessage question()
{
    return QDBusMessage::createMethodCall(
        u"app.veranox.Menu"_s, u"/app/veranox/Menu/Status"_s, u"app.veranox.Menu.Status"_s, u"Describe"_s);
}

constexpr int answerTimeoutMS = 5000;

class BusStatusService final : public StatusService {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "app.veranox.Menu.Status")

public:
    explicit BusStatusService(std::function<QStringList()> describe) : m_describe(std::move(describe)) { }
    ~BusStatusService() override { QDBusConnection::sessionBus().unregisterObject(question().path()); }

public Q_SLOTS:
    QStringList Describe() const { return m_describe(); }

private:
    std::function<QStringList()> m_describe;
};

} // namespace

std::unique_ptr<StatusService> platform::makeStatusService(std::function<QStringList()> describe)
{
    auto service = std::make_unique<BusStatusService>(std::move(describe));
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.registerObject(question().path(), service.get(), QDBusConnection::ExportAllSlots))
        return nullptr;
    return service;
}

// Qt takes its static objects down in reverse order. Its table of types has to be there before the bus, so that it is
// still there while the bus's own thread ends: that thread looks types up to its last moment, and complains on standard
// error when they are gone.
std::optional<QStringList> platform::askForStatus()
{
    qRegisterMetaType<QDBusError>();
    const QDBusReply<QStringList> answer =
        QDBusConnection::sessionBus().call(question(), QDBus::Block, answerTimeoutMS);
    return answer.isValid() ? std::optional(answer.value()) : std::nullopt;
}

#include "StatusService.moc"
