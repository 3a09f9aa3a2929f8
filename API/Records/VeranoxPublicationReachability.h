#pragma once
#include <QMetaType>
#include <QString>
#include <QUrl>
#include <optional>

// The entries of the tailnet's access policy that would let devices connect to this computer's node.
struct VeranoxPublicationPolicyHint {
    QString hostAlias; // alias under which the node can be named in the policy
    QString nodeIP; // the node's tailnet address
    QString source; // who is being granted access
    QString hostsEntry; // ready-made line for the policy's "hosts" section
    QString grant; // ready-made line for the policy's "grants" section
    QString policyURLString; // address of the tailnet's access-control editor, as sent

    // The address to open, if it is an https one with a host: a reply must not make the application open anything else.
    std::optional<QUrl> policyURL() const;

    // Whether both entries are there to be shown.
    bool hasSnippets() const;

    bool operator==(const VeranoxPublicationPolicyHint &) const = default;
};

// Whether the tailnet's policy lets any device connect to a publication.
struct VeranoxPublicationReachability {
    QString state; // "reachable", "unreachable" or "unknown"; anything else says nothing
    qint64 peers = 0; // number of devices that may connect
    bool everyone = false; // every device in the tailnet may connect
    QString detail; // the service's reason while the state is unknown
    std::optional<VeranoxPublicationPolicyHint> hint;

    // The state in a few words; absent when it says nothing.
    std::optional<QString> summary() const;

    // The state with its reason; empty when it says nothing.
    QString help() const;

    bool operator==(const VeranoxPublicationReachability &) const = default;
};

Q_DECLARE_METATYPE(VeranoxPublicationPolicyHint)
Q_DECLARE_METATYPE(VeranoxPublicationReachability)
