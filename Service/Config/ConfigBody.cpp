#include "Service/Config/ConfigBody.h"

#include "Service/Json/JsonProblem.h"
#include "Service/Json/JsonText.h"
#include "Service/Json/StrictBody.h"
#include "Service/Text/Refusal.h"
#include "Service/Text/Words.h"

namespace veranox {

namespace json = boost::json;

namespace {

void refuseBadNames(const json::value &body)
{
    constexpr std::size_t longestNameShown = 80;
    const json::object *document = body.if_object();
    const json::value *profiles = document ? document->if_contains("Profiles") : nullptr;
    if (!profiles || !profiles->is_object())
        return;
    for (const auto &[name, profile] : profiles->get_object())
        if (!isValidName(name))
            throw Refusal(Refusal::Kind::badInput,
                "The profile name \"" + shortened(printable(name), longestNameShown) + "\" " + std::string(nameRule)
                    + ".");
}

} // namespace

ConfigDocument readConfigBody(std::string_view text, const ConfigDocument &current)
{
    const json::value body = parseJson(text);
    refuseBadNames(body);
    ConfigDocument document = readConfig(body);
    JsonReader(body, "").object("Profiles"); // an absent one would take every profile away
    refuseUnknownFields(body, configRecord(document), "");
    document.tunnels = current.tunnels;
    document.publications = current.publications;
    document.asRead = current.asRead;
    return document;
}

} // namespace veranox
