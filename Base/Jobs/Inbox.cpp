#include "Base/Jobs/Inbox.h"
#include "Base/Jobs/ThreadHandOver.h"
#include <QCoreApplication>
#include <QEvent>
#include <utility>

namespace jobs::detail {

void Inbox::put(std::shared_ptr<Delivery> delivery)
{
    const std::scoped_lock lock(m_mutex);
    if (!m_receiver)
        return;
    m_mail.push_back(std::move(delivery));
    if (m_mail.size() == 1) {
        auto *const event = new QEvent(QEvent::User);
        handOver(event);
        QCoreApplication::postEvent(m_receiver, event);
    }
    m_arrived.notify_one();
}

std::vector<std::shared_ptr<Delivery>> Inbox::take()
{
    const std::scoped_lock lock(m_mutex);
    return std::exchange(m_mail, {});
}

bool Inbox::waitForMail(std::chrono::milliseconds limit)
{
    std::unique_lock lock(m_mutex);
    return m_arrived.wait_for(lock, limit, [this] { return !m_mail.empty(); });
}

void Inbox::close()
{
    std::vector<std::shared_ptr<Delivery>> undelivered; // dies after the lock: its end may run foreign code
    const std::scoped_lock lock(m_mutex);
    m_receiver = nullptr;
    undelivered.swap(m_mail);
}

} // namespace jobs::detail
