#include "Publications/VeranoxPublicationErrorMessage.h"
#include "API/Client/VeranoxServerErrorTable.h"
#include <array>

using namespace Qt::StringLiterals;

namespace {

// As the service writes it, followed by the reason of the start's failure: saved and switched on all the same.
constexpr QStringView couldNotBeStarted = u"could not be started: ";

constexpr QStringView notHostAndPort = u"The target must be host:port, for example 127.0.0.1:8080.";
constexpr QStringView unknownField = u"Veranox could not save this publication because it contains a field the service "
                                     "does not recognise. Update Veranox and try again.";

constexpr std::array<VeranoxServerErrorTable::Row, 15> rows{{
    {"already exists"_L1, u"A publication with that name already exists. Choose a different name."},
    {"publications require the tsnet backend"_L1,
        u"Publications need a profile on the tsnet backend. Switch the profile to tsnet on the Profiles page — it will "
        "have to sign in again, because the two backends do not share state."},
    {R"( profile ")"_L1, u"That profile is no longer in the configuration. Choose an existing profile.",
        "is not configured"_L1},
    {"does not exist"_L1,
        u"This publication no longer exists — it was removed while you were editing it. Close the editor and create it "
        "again."},
    {"is not configured"_L1, u"That publication no longer exists — it was changed or removed elsewhere."},
    {"veranox's own"_L1,
        u"The target is one of Veranox's own listeners — a tunnel, a proxy, the PAC server or the control API. "
        "Publishing it would let this tailnet relay through Veranox into another one. Point the publication at your "
        "own service instead."},
    {"loopback"_L1,
        u"The target must be a loopback address such as 127.0.0.1:8080, so Veranox never forwards tailnet traffic onto "
        "your local network."},
    {"must be host:port"_L1, notHostAndPort},
    {"port must be numeric"_L1, notHostAndPort},
    {"empty host"_L1, notHostAndPort},
    {"must be in 1-65535"_L1, u"The tailnet port must be a number between 1 and 65535."},
    {"publication endpoint"_L1, u"Another publication already uses that port on this profile. Pick a different port."},
    {"reach"_L1, u"That reach is not one Veranox understands. Publications are reachable from their own tailnet."},
    {"decoding json body"_L1, unknownField},
    {"unknown field"_L1, unknownField},
}};

} // namespace

namespace VeranoxPublicationErrorMessage {

QString message(const VeranoxAPIFailure &failure, const QString &serviceUnavailable)
{
    return VeranoxServerErrorTable::message(failure, serviceUnavailable, messageForServerError);
}

QString messageForServerError(const QString &text)
{
    if (const auto phrase = text.indexOf(couldNotBeStarted); phrase >= 0) {
        const QString reason = text.sliced(phrase + couldNotBeStarted.size());
        return u"The publication was switched on and saved, but it could not be started: "_s
            + VeranoxServerErrorTable::firstLine(reason);
    }
    return VeranoxServerErrorTable::sentence(text, rows);
}

} // namespace VeranoxPublicationErrorMessage
