#pragma once
#include "Core/MenuBarIcon.h"
#include <QString>
#include <QUrl>

class VeranoxRuntimeClientProtocol;
class VeranoxState;

// What follows from the state without being state of its own. Read inside of a binding, each is followed like the
// getters that it reads. Main thread only.
namespace VeranoxDerivedState {

QString statusTitle(const VeranoxState &state);
QString routerStatusDetail(const VeranoxState &state, const VeranoxRuntimeClientProtocol &runtime);
bool statusActionRestartsService(const VeranoxState &state);
bool profilesSettling(const VeranoxState &state);
bool menuBarNeedsAttention(const VeranoxState &state);
MenuBarIcon menuBarIcon(const VeranoxState &state);
QUrl pacURL(const VeranoxState &state); // where the service offers its proxy configuration

} // namespace VeranoxDerivedState
