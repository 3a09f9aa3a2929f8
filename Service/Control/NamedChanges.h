#pragma once
#include "Service/Config/ConfigDocument.h"
#include "Service/Control/SaveRequests.h"
#include <string>
#include <string_view>

namespace veranox {

// What saving, deleting and switching has in common for tunnels and publications. `kind` is "tunnel" or "publication".
// Everything that is wrong is thrown as Refusal.

/// Refuses a name that breaks the rule, then an original name that there is not, then a name that another record has.
template <class Settings>
void checkNames(std::string_view kind, const NamedList<Settings> &list, const SaveRequest<Settings> &save);

/// The record of that name; refuses one that there is not.
template <class Settings>
Settings &requireNamed(std::string_view kind, NamedList<Settings> &list, const std::string &name);
template <class Settings>
const Settings &requireNamed(std::string_view kind, const NamedList<Settings> &list, const std::string &name);

/// Puts the checked record in the place of the original one, or at the end. What the file holds beyond the known keys
/// moves along to a new name.
void putTunnel(ConfigDocument &document, SaveRequest<TunnelSettings> save);
void putPublication(ConfigDocument &document, SaveRequest<PublicationSettings> save);

/// How a name that came in a request is shown in a sentence.
std::string shownName(const std::string &name);

} // namespace veranox
