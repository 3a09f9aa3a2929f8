// The launch of the application, as the store sees it.
#include "Core/VeranoxStore.h"

using namespace Qt::StringLiterals;

jobs::Async<> VeranoxStore::start()
{
    co_await prepareRuntimeLog();
    appendLog(u"[APP] automatic local service startup requested"_s);
    co_await startServiceAndRefresh();
    if (m_isQuitting)
        co_return;
    startRefreshLoop();
}
