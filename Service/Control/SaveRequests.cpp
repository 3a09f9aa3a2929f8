#include "Service/Control/SaveRequests.h"

#include "Service/Json/JsonText.h"
#include "Service/Json/StrictBody.h"

namespace veranox {

namespace json = boost::json;

namespace {

TunnelSettings readStrictTunnel(JsonReader reader)
{
    reader.requireAll({"DisplayName", "Profile", "Mode", "Listen", "Target", "Disabled"});
    if (std::optional<JsonReader> ssh = reader.objectIfPresent("SSH"))
        ssh->requireAll({"Bastion", "User", "Auth", "IdentityFile"});
    return readTunnel(reader);
}

std::int64_t readPort(JsonReader &reader)
{
    reader.requireAll({"Port"});
    const json::value *port = reader.find("Port");
    if (!port->is_int64() && !port->is_uint64())
        reader.complain("Port", "must be a whole number");
    return port->is_int64() ? port->get_int64() : 0;
}

PublicationSettings readStrictPublication(JsonReader reader)
{
    return {.displayName = reader.text("DisplayName"),
        .profile = reader.text("Profile"),
        .target = reader.text("Target"),
        .reach = reader.text("Reach"),
        .port = readPort(reader),
        .tls = reader.flag("TLS"),
        .disabled = reader.flag("Disabled")};
}

template <class Settings>
SaveRequest<Settings> readSave(std::string_view text, std::string_view key, Settings (*read)(JsonReader))
{
    const json::value body = parseJson(text);
    JsonReader reader(body, "");
    SaveRequest<Settings> save{.name = reader.text("Name"), .originalName = std::nullopt, .settings = {}};
    if (reader.find("OriginalName"))
        save.originalName = reader.text("OriginalName");
    save.settings = read(reader.object(key));
    refuseUnknownFields(
        body, json::object{{"Name", save.name}, {"OriginalName", nullptr}, {key, toJson(save.settings)}}, "");
    return save;
}

} // namespace

SaveRequest<TunnelSettings> readTunnelSave(std::string_view body)
{
    return readSave<TunnelSettings>(body, "Tunnel", readStrictTunnel);
}

SaveRequest<PublicationSettings> readPublicationSave(std::string_view body)
{
    return readSave<PublicationSettings>(body, "Publication", readStrictPublication);
}

std::string readSecret(std::string_view text)
{
    const json::value body = parseJson(text);
    std::string password = JsonReader(body, "").text("Password");
    refuseUnknownFields(body, json::object{{"Password", nullptr}}, "");
    return password;
}

} // namespace veranox
