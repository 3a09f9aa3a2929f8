#include "Tunnels/VeranoxTunnelErrorMessage.h"
#include "API/Client/VeranoxServerErrorTable.h"
#include <array>

using namespace Qt::StringLiterals;

namespace {

constexpr std::array<VeranoxServerErrorTable::Row, 3> rows{{
    {"already exists"_L1, u"A tunnel with that name already exists. Choose a different name."},
    {"does not exist"_L1,
        u"This tunnel no longer exists — it was removed while you were editing it. Close the editor and create it "
        "again."},
    {"is not configured"_L1, u"That tunnel no longer exists — it was changed or removed elsewhere."},
}};

} // namespace

namespace VeranoxTunnelErrorMessage {

QString message(const VeranoxAPIFailure &failure, const QString &serviceUnavailable)
{
    return VeranoxServerErrorTable::message(failure, serviceUnavailable, messageForServerError);
}

QString messageForServerError(const QString &text)
{
    return VeranoxServerErrorTable::sentence(text, rows);
}

} // namespace VeranoxTunnelErrorMessage
