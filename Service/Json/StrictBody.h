#pragma once
#include <boost/json/value.hpp>
#include <string>
#include <string_view>

namespace veranox {

/// Compares what a sender wrote with `known`, the record that was made of it and that has every key there is. Throws
/// JsonProblem for the first member of the body, at any depth, that the record does not have: it would be lost without
/// a word. `place` is the path of the body, empty for the whole document.
void refuseUnknownFields(const boost::json::value &body, const boost::json::value &known, const std::string &place);

} // namespace veranox
