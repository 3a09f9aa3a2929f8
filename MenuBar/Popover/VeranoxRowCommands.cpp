#include "MenuBar/Popover/VeranoxRowCommands.h"

using namespace std::chrono_literals;

namespace {

constexpr jobs::Clock::Duration copiedFor = 1200ms; // long enough to be read

} // namespace

VeranoxRowCommands::VeranoxRowCommands(
    jobs::MainQueue &queue, VeranoxRowOperations operations, std::function<void(const QString &)> copyText)
    : m_operations(std::move(operations)),
      m_copyText(std::move(copyText)),
      m_jobs(queue)
{
}

bool VeranoxRowCommands::begin(const QString &name, bool VeranoxRowActivity::*flag)
{
    const VeranoxRowActivity current = activity(name);
    if (!canOperate() || current.isSwitching || current.isRetrying)
        return false;
    m_activities[name].*flag = true;
    Q_EMIT started();
    Q_EMIT changed();
    return true;
}

void VeranoxRowCommands::end(const QString &name, bool VeranoxRowActivity::*flag)
{
    m_activities[name].*flag = false;
    if (m_activities.value(name) == VeranoxRowActivity())
        m_activities.remove(name);
    Q_EMIT changed();
}

void VeranoxRowCommands::setEnabled(const QString &name, bool enabled)
{
    if (begin(name, &VeranoxRowActivity::isSwitching))
        m_jobs.start(runSetEnabled(name, enabled));
}

jobs::Async<> VeranoxRowCommands::runSetEnabled(QString name, bool enabled)
{
    const QString failure = co_await m_operations.setEnabled(name, enabled);
    end(name, &VeranoxRowActivity::isSwitching);
    Q_EMIT finished(failure);
}

void VeranoxRowCommands::retry(const QString &name)
{
    if (begin(name, &VeranoxRowActivity::isRetrying))
        m_jobs.start(runRetry(name));
}

jobs::Async<> VeranoxRowCommands::runRetry(QString name)
{
    const QString failure = co_await m_operations.restart(name);
    end(name, &VeranoxRowActivity::isRetrying);
    Q_EMIT finished(failure);
}

void VeranoxRowCommands::copy(const QString &name, const QString &text)
{
    m_copyText(text);
    if (std::exchange(m_activities[name].justCopied, true))
        return; // the mark stands already
    Q_EMIT changed();
    m_jobs.start(showCopied(name));
}

jobs::Async<> VeranoxRowCommands::showCopied(QString name)
{
    co_await jobs::sleep(copiedFor);
    end(name, &VeranoxRowActivity::justCopied);
}
