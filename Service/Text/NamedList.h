#pragma once
#include <algorithm>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace veranox {

/// Records under names, in the order in which the file gives them: that order is the one that people see.
template <class Record> using NamedList = std::vector<std::pair<std::string, Record>>;

/// The record of that name, or null.
template <class Record> const Record *findNamed(const NamedList<Record> &list, std::string_view name)
{
    const auto found = std::ranges::find(list, name, &std::pair<std::string, Record>::first);
    return found == list.end() ? nullptr : &found->second;
}

} // namespace veranox
