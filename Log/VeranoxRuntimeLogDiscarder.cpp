#include "Log/VeranoxRuntimeLogDiscarder.h"

jobs::Async<QList<VeranoxRuntimeLogEntry>> VeranoxRuntimeLogDiscarder::loadRecent(int /*limit*/)
{
    co_return QList<VeranoxRuntimeLogEntry>();
}

jobs::Async<> VeranoxRuntimeLogDiscarder::append(QList<VeranoxRuntimeLogEntry> /*entries*/)
{
    co_return;
}
