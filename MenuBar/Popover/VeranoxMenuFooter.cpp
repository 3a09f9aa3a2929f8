#include "MenuBar/Popover/VeranoxMenuFooter.h"
#include "Core/VeranoxStore.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr jobs::Clock::Duration copiedFor = 1200ms; // long enough to be read

} // namespace

VeranoxMenuFooter::VeranoxMenuFooter(
    jobs::MainQueue &queue, VeranoxStore &store, VeranoxMenuActions actions, QObject *parent)
    : QObject(parent),
      m_store(store),
      m_actions(std::move(actions)),
      m_jobs(queue)
{
    m_watches.add([&store] { return store.serviceState(); }, [this] { Q_EMIT changed(); });
}

bool VeranoxMenuFooter::serviceIsOnline() const
{
    return m_store.serviceState().isOnline();
}

void VeranoxMenuFooter::copyPAC()
{
    m_actions.copyText(m_store.pacURL().toString());
    m_copied.cancel();
    m_copied = m_jobs.start(showCopied());
}

jobs::Async<> VeranoxMenuFooter::showCopied()
{
    m_justCopied = true;
    Q_EMIT changed();
    if (co_await jobs::sleep(copiedFor) == jobs::Sleep::cut)
        co_return; // a later copy goes on showing it
    m_justCopied = false;
    Q_EMIT changed();
}

void VeranoxMenuFooter::openWebGUI() const
{
    m_actions.openAddress(QUrl(u"http://127.0.0.1:43200"_s));
}

void VeranoxMenuFooter::requestQuit() const
{
    m_actions.requestQuit();
}
