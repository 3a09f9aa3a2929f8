#include "API/Records/VeranoxEnvironment.h"
#include "Base/Json/Codec.h"

template <> struct json::Layout<VeranoxEnvironment> {
    static constexpr std::tuple fields{
        required("TailscaledAvailable", &VeranoxEnvironment::tailscaledAvailable),
        required("TailscaledBin", &VeranoxEnvironment::tailscaledBin),
    };
};

template VeranoxEnvironment decodeRecord(const QByteArray &);
