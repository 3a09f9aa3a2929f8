#pragma once
#include "Service/Text/NamedList.h"
#include <string_view>
#include <unordered_map>

namespace veranox {

/// Finds the records of a list by their names without going through it. The list must outlive it and stay as it is.
template <class Record> class NameIndex {
public:
    explicit NameIndex(const NamedList<Record> &list)
    {
        m_records.reserve(list.size());
        for (const auto &[name, record] : list)
            m_records.emplace(name, &record);
    }

    /// The record of that name, or null; of equal names the first.
    const Record *find(std::string_view name) const
    {
        const auto found = m_records.find(name);
        return found == m_records.end() ? nullptr : found->second;
    }

private:
    std::unordered_map<std::string_view, const Record *> m_records;
};

} // namespace veranox
