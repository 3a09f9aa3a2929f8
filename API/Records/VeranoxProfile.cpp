#include "API/Records/VeranoxProfile.h"
#include "API/Values/VeranoxProfileAppearance.h"
#include "Base/Json/Codec.h"

using namespace Qt::StringLiterals;

template <> struct json::Layout<VeranoxProfileStatus> {
    static constexpr std::tuple fields{
        field("ok", &VeranoxProfileStatus::ok, false),
        field("backend_state", &VeranoxProfileStatus::backendState, ""),
        field("raw", &VeranoxProfileStatus::raw, ""),
        field("error", &VeranoxProfileStatus::error, ""),
        field("checked_at", &VeranoxProfileStatus::checkedAt, ""),
    };
};

template <> struct json::Layout<VeranoxProfile> {
    static constexpr std::tuple fields{
        field("name", &VeranoxProfile::name, "unknown"),
        field("display_name", &VeranoxProfile::displayName, &VeranoxProfile::name),
        field("icon", &VeranoxProfile::icon, ""),
        field("color", &VeranoxProfile::color, ""),
        field("hostname", &VeranoxProfile::hostname, ""),
        field({"backend", "Backend"}, &VeranoxProfile::backend, "tsnet"),
        field("suffixes", &VeranoxProfile::suffixes),
        field("match_root", &VeranoxProfile::matchRoot, false),
        field("ip_routes", &VeranoxProfile::ipRoutes),
        field("state_dir", &VeranoxProfile::stateDir, ""),
        field("socket", &VeranoxProfile::socket, ""),
        field("http_proxy", &VeranoxProfile::httpProxy, ""),
        field("socks5_proxy", &VeranoxProfile::socks5Proxy, ""),
        field("udp_port", &VeranoxProfile::udpPort, std::nullopt),
        field("status", &VeranoxProfile::status, &VeranoxProfileStatus::notCheckedYet),
    };
};

VeranoxProfileStatus VeranoxProfileStatus::notCheckedYet()
{
    return {.error = u"Not checked yet."_s};
}

QString VeranoxProfile::profileIconName() const
{
    return VeranoxProfileAppearance::knownIcon(icon, displayName);
}

QString VeranoxProfile::profileAccentColor() const
{
    return VeranoxProfileAppearance::knownColor(color, displayName);
}

template VeranoxProfile decodeRecord(const QByteArray &);
template QList<VeranoxProfile> decodeRecord(const QByteArray &);
