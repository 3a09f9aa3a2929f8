#include "Core/VeranoxDerivedState.h"
#include "API/Values/VeranoxRecordClass.h"
#include "Core/VeranoxRuntimeClientProtocol.h"
#include "State/VeranoxState.h"
#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

template <class Record> bool anyIs(VeranoxRecordClass which, const QList<Record> &records)
{
    return std::ranges::any_of(records, [which](const Record &record) { return classOf(record) == which; });
}

} // namespace

namespace VeranoxDerivedState {

QString statusTitle(const VeranoxState &state)
{
    return state.routerNeedsRestart() ? u"Restart to apply"_s : state.serviceState().title();
}

QString routerStatusDetail(const VeranoxState &state, const VeranoxRuntimeClientProtocol &runtime)
{
    if (state.serviceState().isOnline())
        return u"Managed by Veranox service"_s;
    const auto router = runtime.routerProcess();
    return router && router->isRunning ? u"Waiting for the service to answer"_s
                                       : u"Start Veranox to enable local routing"_s;
}

bool statusActionRestartsService(const VeranoxState &state)
{
    return state.routerNeedsRestart() || state.serviceState().kind() == ServiceState::Kind::offline
        || state.serviceState().kind() == ServiceState::Kind::error;
}

bool profilesSettling(const VeranoxState &state)
{
    return anyIs(VeranoxRecordClass::starting, state.profiles());
}

bool menuBarNeedsAttention(const VeranoxState &state)
{
    constexpr auto failed = VeranoxRecordClass::failed;
    return anyIs(failed, state.profiles()) || anyIs(failed, state.tunnels()) || anyIs(failed, state.publications());
}

MenuBarIcon menuBarIcon(const VeranoxState &state)
{
    switch (state.serviceState().kind()) {
    case ServiceState::Kind::starting:
        return MenuBarIcon::starting;
    case ServiceState::Kind::offline:
        return MenuBarIcon::offline;
    case ServiceState::Kind::error:
        return MenuBarIcon::failed;
    case ServiceState::Kind::online:
        break;
    }
    if (state.profiles().isEmpty())
        return MenuBarIcon::offline;
    if (menuBarNeedsAttention(state))
        return MenuBarIcon::attention;
    return profilesSettling(state) ? MenuBarIcon::starting : MenuBarIcon::normal;
}

QUrl pacURL(const VeranoxState &state)
{
    const QString listen = state.config().router.pacListen;
    const QUrl url(u"http://"_s + listen + u"/proxy.pac"_s, QUrl::StrictMode);
    if (!url.isValid())
        qFatal("The PAC listen address %ls makes no URL.", qUtf16Printable(listen));
    return url;
}

} // namespace VeranoxDerivedState
