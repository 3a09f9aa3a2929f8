#pragma once
#include <QObject>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <vector>

namespace jobs::detail {

// Something that another thread hands to the main thread.
class Delivery {
public:
    Delivery(const Delivery &) = delete;
    Delivery &operator=(const Delivery &) = delete;
    virtual ~Delivery() = default;
    virtual void deliver() = 0; // main thread

protected:
    Delivery() = default;
};

// Where other threads leave what the main thread is to deliver. Shared, and so outlives the queue: a late thread finds
// it closed instead of gone.
class Inbox {
public:
    explicit Inbox(QObject &receiver) : m_receiver(&receiver) { }
    // Any thread. The receiver gets a QEvent::User for the first mail; a closed inbox drops it.
    void put(std::shared_ptr<Delivery> delivery);
    std::vector<std::shared_ptr<Delivery>> take();
    // Blocks until mail is there; false when none came within the limit.
    bool waitForMail(std::chrono::milliseconds limit);
    void close();

    std::atomic<int> outstanding = 0; // answers on their way from threads; a virtual clock stands still for them

private:
    std::mutex m_mutex;
    std::condition_variable m_arrived;
    std::vector<std::shared_ptr<Delivery>> m_mail;
    QObject *m_receiver;
};

} // namespace jobs::detail
