#include "Service/Routing/RouteTable.h"

#include "Service/Text/Words.h"

namespace veranox {

namespace asio = boost::asio;

namespace {

constexpr unsigned short wholeAddress4 = 32;
constexpr unsigned short wholeAddress6 = 128;

/// Takes the last label off the name, with the full stop in front of it.
std::string_view takeLastLabel(std::string_view &name)
{
    const std::size_t stop = name.rfind('.');
    const std::string_view label = stop == std::string_view::npos ? name : name.substr(stop + 1);
    name.remove_suffix(std::min(name.size(), label.size() + 1));
    return label;
}

} // namespace

RouteTable::RouteTable(std::shared_ptr<const ConfigDocument> document) : m_document(std::move(document))
{
    for (std::size_t i = 0; i < m_document->profiles.size(); ++i) {
        const ProfileSettings &profile = m_document->profiles[i].second;
        for (const std::string &suffix : profile.suffixes)
            addSuffix(i, suffix, profile.matchRoot);
        for (const std::string &range : profile.ipRoutes)
            addRange(i, range);
    }
}

/// A suffix with the full stop in front written out counts as the longer one of two that are otherwise the same.
void RouteTable::prefer(std::optional<std::size_t> &place, std::size_t rule) const
{
    if (!place || m_rules[rule].suffix.size() > m_rules[*place].suffix.size())
        place = rule;
}

void RouteTable::addSuffix(std::size_t profile, const std::string &written, bool matchRoot)
{
    const std::string suffix = lowered(written);
    if (suffix.size() < 2)
        return;
    Label &label = m_labels[labelFor(suffix.starts_with('.') ? std::string_view(suffix).substr(1) : suffix)];
    const std::size_t rule = m_rules.size();
    m_rules.push_back({profile, suffix, ""});
    prefer(label.below, rule);
    if (matchRoot)
        prefer(label.itself, rule);
}

/// The place of the suffix in the tree, which grows where it must.
std::size_t RouteTable::labelFor(std::string_view suffix)
{
    std::size_t place = 0;
    for (bool isWhole = false; !isWhole;) {
        isWhole = !suffix.contains('.');
        const auto [next, isNew] = m_labels[place].before.emplace(takeLastLabel(suffix), m_labels.size());
        place = next->second;
        if (isNew)
            m_labels.emplace_back();
    }
    return place;
}

void RouteTable::addRange(std::size_t profile, const std::string &written)
{
    boost::system::error_code failure;
    const std::size_t rule = m_rules.size();
    if (const auto address = asio::ip::make_address(written, failure); !failure) {
        if (address.is_v4())
            m_ranges4.add(address.to_v4(), wholeAddress4, rule);
        else
            m_ranges6.add(address.to_v6(), wholeAddress6, rule);
    } else if (const auto range4 = asio::ip::make_network_v4(written, failure); !failure) {
        m_ranges4.add(range4.address(), range4.prefix_length(), rule);
    } else if (const auto range6 = asio::ip::make_network_v6(written, failure); !failure) {
        m_ranges6.add(range6.address(), range6.prefix_length(), rule);
    } else {
        return;
    }
    m_rules.push_back({profile, "", written});
}

std::optional<std::size_t> RouteTable::ruleOfName(std::string_view host) const
{
    std::optional<std::size_t> found;
    std::size_t place = 0;
    for (bool isWhole = false; !isWhole;) {
        isWhole = !host.contains('.');
        const auto next = m_labels[place].before.find(takeLastLabel(host));
        if (next == m_labels[place].before.end())
            return found;
        place = next->second;
        const std::optional<std::size_t> &rule = isWhole ? m_labels[place].itself : m_labels[place].below;
        if (rule)
            found = rule;
    }
    return found;
}

std::optional<PathRoute> RouteTable::find(std::string_view host) const
{
    if (host.ends_with('.'))
        host.remove_suffix(1);
    const std::string name = lowered(host);
    boost::system::error_code failure;
    const auto address = asio::ip::make_address(name, failure);
    const std::optional<std::size_t> rule = failure ? ruleOfName(name)
        : address.is_v4()                           ? m_ranges4.find(address.to_v4())
                                                    : m_ranges6.find(address.to_v6());
    return rule ? std::optional(m_rules[*rule]) : std::nullopt;
}

} // namespace veranox
