#pragma once
#include "Service/Json/JsonProblem.h"
#include "Service/Json/JsonReader.h"
#include "Service/Text/NamedList.h"
#include "Service/Text/Words.h"

namespace veranox {

/// The members of an object as records under their names, each read with `read`. An absent object gives none. Throws
/// JsonProblem for a name that breaks the rule and for what `read` complains of.
template <class Record> NamedList<Record> readNamed(std::optional<JsonReader> object, Record (*read)(JsonReader))
{
    NamedList<Record> list;
    if (!object)
        return list;
    object->eachMember([&](const std::string &name, const boost::json::value &value, const std::string &place) {
        if (!isValidName(name))
            throw JsonProblem(place, "is not a name that can be used: it " + std::string(nameRule));
        list.emplace_back(name, read(JsonReader(value, place)));
    });
    return list;
}

} // namespace veranox
