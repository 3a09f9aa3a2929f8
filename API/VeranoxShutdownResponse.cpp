#include "API/VeranoxShutdownResponse.h"
#include "API/Json/Codec.h"

template <> struct json::Layout<VeranoxShutdownResponse> {
    static constexpr std::tuple fields{
        required("status", &VeranoxShutdownResponse::status),
    };
};

template VeranoxShutdownResponse decodeRecord(const QByteArray &);
