#include "Service/Json/StrictBody.h"

#include "Service/Json/JsonProblem.h"
#include "Service/Json/JsonReader.h"
#include "Service/Text/Words.h"
#include <boost/json/object.hpp>

namespace veranox {

namespace json = boost::json;

void refuseUnknownFields(const json::value &body, const json::value &known, const std::string &place)
{
    constexpr std::size_t longestKeyShown = 80;
    const json::object *written = body.if_object();
    const json::object *record = known.if_object();
    if (!written || !record)
        return;
    const JsonReader reader(body, place);
    for (const auto &[key, value] : *written) {
        const json::value *counterpart = record->if_contains(key);
        if (!counterpart)
            throw JsonProblem(reader.place(), "unknown field \"" + shortened(printable(key), longestKeyShown) + "\"");
        refuseUnknownFields(value, *counterpart, reader.placeOf(key));
    }
}

} // namespace veranox
