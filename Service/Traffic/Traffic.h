#pragma once
#include "Service/Config/ConfigDocument.h"
#include "Service/Publications/PublicationRecord.h"
#include "Service/Reports/PathQuestion.h"
#include "Service/Tunnels/TunnelRecord.h"
#include <boost/asio/awaitable.hpp>
#include <boost/json/object.hpp>
#include <memory>
#include <string>

namespace veranox {

/// The connections that the service carries: tunnels into the tailnets and publications of local services in them.
/// Everything is called on the thread of the io_context on which the connections run, and nothing blocks.
class Traffic {
public:
    virtual ~Traffic() = default;

    /// Opens, closes and moves listeners so that they are as the document says. To be called after the document was
    /// loaded and after every save that succeeded. What did not change keeps its connections; a tunnel or publication
    /// that is renamed, changed, disabled or gone loses them, and one whose profile is gone does, too. Never fails:
    /// what cannot be opened says so in its status.
    virtual void apply(std::shared_ptr<const ConfigDocument> document) = 0;

    /// To be called when a node may have changed for a reason other than time: after a login or a logout.
    virtual void nodesChanged() = 0;

    /// How it fares now; for a name that the applied document does not hold, the status of something stopped.
    virtual TunnelStatus tunnelStatus(const std::string &name) const = 0;
    virtual PublicationStatus publicationStatus(const std::string &name) const = 0;

    /// Drops all its connections, forgets its last error and begins anew at once. Does nothing for an unknown name and
    /// for one that is disabled.
    virtual void restartTunnel(const std::string &name) = 0;
    virtual void restartPublication(const std::string &name) = 0;

    /// Takes over the password of an account on a bastion and keeps it in memory alone, until the tunnel goes or the
    /// service ends. A tunnel that waits for it begins at once. The name may come before the tunnel does.
    virtual void setTunnelSecret(const std::string &name, std::string password) = 0;

    /// Tries the way to a target and tells what it found, as the control API gives it: every key always there. Takes
    /// less than 10 seconds and never fails; what goes wrong is part of the report.
    virtual boost::asio::awaitable<boost::json::object> pathReport(PathQuestion question) = 0;

    /// Ends everything, so that the io_context runs out of work. Harmless when repeated.
    virtual void stop() = 0;
};

} // namespace veranox
