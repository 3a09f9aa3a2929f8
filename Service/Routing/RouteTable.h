#pragma once
#include "Service/Config/ConfigDocument.h"
#include "Service/Routing/AddressRanges.h"
#include <boost/asio/ip/address.hpp>
#include <cstddef>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace veranox {

/// The rule by which a profile owns a host.
struct PathRoute {
    std::size_t profile = 0; // place in the document
    std::string suffix; // of a rule for names: in lower case, otherwise as written
    std::string ipRoute; // of a rule for addresses: as written

    bool operator==(const PathRoute &) const = default;
};

/// Which profile owns a host, by the rules of one document. Made once for a document and never changed, so that any
/// number of threads may ask it.
class RouteTable {
public:
    /// A suffix or range that is none is passed over.
    explicit RouteTable(std::shared_ptr<const ConfigDocument> document);

    /// Of the rules for names the longest suffix wins, of those for addresses the narrowest range, and among equals the
    /// first profile. Capital letters and a full stop at the end of the host make no difference. Nothing when no
    /// profile owns it.
    std::optional<PathRoute> find(std::string_view host) const;

    /// What it was made of.
    const ConfigDocument &document() const { return *m_document; }

private:
    /// A label in the tree of suffixes, whose root is the end of every name. Rules are named by their places.
    struct Label {
        std::map<std::string, std::size_t, std::less<>> before; // the labels that may stand in front of it
        std::optional<std::size_t> below; // the rule for names that end here with more in front
        std::optional<std::size_t> itself; // the rule for the name that is just this
    };

    void addSuffix(std::size_t profile, const std::string &written, bool matchRoot);
    void addRange(std::size_t profile, const std::string &written);
    void prefer(std::optional<std::size_t> &place, std::size_t rule) const;
    std::size_t labelFor(std::string_view suffix);
    std::optional<std::size_t> ruleOfName(std::string_view host) const;

    std::shared_ptr<const ConfigDocument> m_document;
    std::vector<PathRoute> m_rules;
    std::vector<Label> m_labels{1};
    AddressRanges<boost::asio::ip::address_v4> m_ranges4;
    AddressRanges<boost::asio::ip::address_v6> m_ranges6;
};

} // namespace veranox
