#include "Service/Nodes/Lab/LabConfig.h"

namespace veranox {

namespace {

template <class Lab, class Settings> bool addMissing(const NamedList<Lab> &lab, NamedList<Settings> &list)
{
    bool added = false;
    for (const auto &[name, described] : lab) {
        if (!described.config || findNamed(list, name))
            continue;
        list.emplace_back(name, *described.config);
        added = true;
    }
    return added;
}

} // namespace

bool addLabConfig(const LabNetwork &network, ConfigDocument &document)
{
    const bool profiles = addMissing(network.profiles, document.profiles);
    const bool tunnels = addMissing(network.tunnels, document.tunnels);
    const bool publications = addMissing(network.publications, document.publications);
    return profiles || tunnels || publications;
}

} // namespace veranox
