#include "API/Records/VeranoxShutdownResponse.h"
#include "Base/Json/Codec.h"

template <> struct json::Layout<VeranoxShutdownResponse> {
    static constexpr std::tuple fields{
        required("status", &VeranoxShutdownResponse::status),
    };
};

template VeranoxShutdownResponse decodeRecord(const QByteArray &);
