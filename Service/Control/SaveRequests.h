#pragma once
#include "Service/Config/PublicationSettings.h"
#include "Service/Config/TunnelSettings.h"
#include <optional>
#include <string>
#include <string_view>

namespace veranox {

/// What the sender of a save wants kept under a name.
template <class Settings> struct SaveRequest {
    std::string name;
    std::optional<std::string> originalName; // whose record this is so far; absent for a new one
    Settings settings;
};

/// Reads `{"Name": …, "OriginalName": …, "Tunnel": {…}}`; OriginalName and the tunnel's SSH may be missing, nothing
/// else may, and nothing else may be there. Throws JsonProblem. Whether the values can be used is not looked at, beyond
/// the words that Mode and Auth know.
SaveRequest<TunnelSettings> readTunnelSave(std::string_view body);

/// The same for `{"Name": …, "OriginalName": …, "Publication": {…}}`. Any Reach passes, and a Port beyond all numbers
/// is 0.
SaveRequest<PublicationSettings> readPublicationSave(std::string_view body);

/// Reads `{"Password": …}`.
std::string readSecret(std::string_view body);

} // namespace veranox
