#pragma once
#include "Service/Config/ConfigDocument.h"
#include "Service/Text/NameIndex.h"
#include <memory>
#include <string>

namespace veranox {

/// A document that never changes any more, and its entries by name. Any number of threads may read it.
class IndexedConfig {
public:
    explicit IndexedConfig(std::shared_ptr<const ConfigDocument> document)
        : m_document(std::move(document)),
          m_profiles(m_document->profiles),
          m_tunnels(m_document->tunnels),
          m_publications(m_document->publications)
    {
    }

    const ConfigDocument &document() const { return *m_document; }
    /// The entry of that name, or null.
    const ProfileSettings *profile(const std::string &name) const { return m_profiles.find(name); }
    const TunnelSettings *tunnel(const std::string &name) const { return m_tunnels.find(name); }
    const PublicationSettings *publication(const std::string &name) const { return m_publications.find(name); }

private:
    std::shared_ptr<const ConfigDocument> m_document;
    NameIndex<ProfileSettings> m_profiles;
    NameIndex<TunnelSettings> m_tunnels;
    NameIndex<PublicationSettings> m_publications;
};

} // namespace veranox
