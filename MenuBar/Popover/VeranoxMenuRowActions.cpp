#include "MenuBar/Popover/VeranoxMenuRowActions.h"

using namespace std::chrono_literals;

namespace {

constexpr jobs::Clock::Duration copiedFor = 1200ms; // long enough to be read

} // namespace

VeranoxMenuRowActions::VeranoxMenuRowActions(
    jobs::MainQueue &queue, VeranoxRowOperations operations, std::function<void(const QString &)> copyText)
    : m_operations(std::move(operations)),
      m_copyText(std::move(copyText)),
      m_jobs(queue)
{
}

bool VeranoxMenuRowActions::begin(const QString &name, bool VeranoxMenuRowActivity::*flag)
{
    VeranoxMenuRowActivity &activity = m_activities[name];
    if (!canOperate() || activity.isSwitching || activity.isRetrying)
        return false;
    activity.*flag = true;
    Q_EMIT started();
    Q_EMIT changed();
    return true;
}

void VeranoxMenuRowActions::end(const QString &name, bool VeranoxMenuRowActivity::*flag)
{
    m_activities[name].*flag = false;
    if (m_activities.value(name) == VeranoxMenuRowActivity())
        m_activities.remove(name);
    Q_EMIT changed();
}

void VeranoxMenuRowActions::setEnabled(const QString &name, bool enabled)
{
    if (begin(name, &VeranoxMenuRowActivity::isSwitching))
        m_jobs.start(runSetEnabled(name, enabled));
}

jobs::Async<> VeranoxMenuRowActions::runSetEnabled(QString name, bool enabled)
{
    const QString failure = co_await m_operations.setEnabled(name, enabled);
    end(name, &VeranoxMenuRowActivity::isSwitching);
    Q_EMIT finished(failure);
}

void VeranoxMenuRowActions::retry(const QString &name)
{
    if (begin(name, &VeranoxMenuRowActivity::isRetrying))
        m_jobs.start(runRetry(name));
}

jobs::Async<> VeranoxMenuRowActions::runRetry(QString name)
{
    const QString failure = co_await m_operations.restart(name);
    end(name, &VeranoxMenuRowActivity::isRetrying);
    Q_EMIT finished(failure);
}

void VeranoxMenuRowActions::copy(const QString &name, const QString &text)
{
    m_copyText(text);
    if (std::exchange(m_activities[name].justCopied, true))
        return; // the mark stands already
    Q_EMIT changed();
    m_jobs.start(showCopied(name));
}

jobs::Async<> VeranoxMenuRowActions::showCopied(QString name)
{
    co_await jobs::sleep(copiedFor);
    end(name, &VeranoxMenuRowActivity::justCopied);
}
