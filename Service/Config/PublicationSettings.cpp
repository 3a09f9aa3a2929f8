#include "Service/Config/PublicationSettings.h"

namespace veranox {

PublicationSettings readPublication(JsonReader reader)
{
    return {.displayName = reader.text("DisplayName", ""),
        .profile = reader.text("Profile"),
        .target = reader.text("Target"),
        .reach = reader.word("Reach", {"tailnet", "funnel"}, "tailnet"),
        .port = reader.number("Port", portRange),
        .tls = reader.flag("TLS", false),
        .disabled = reader.flag("Disabled", false)};
}

boost::json::object toJson(const PublicationSettings &publication)
{
    return {{"DisplayName", publication.displayName}, {"Profile", publication.profile}, {"Target", publication.target},
        {"Reach", publication.reach}, {"Port", publication.port}, {"TLS", publication.tls},
        {"Disabled", publication.disabled}};
}

} // namespace veranox
