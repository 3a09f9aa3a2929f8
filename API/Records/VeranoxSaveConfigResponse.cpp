#include "API/Records/VeranoxSaveConfigResponse.h"
#include "Base/Json/Codec.h"

template <> struct json::Layout<VeranoxSaveConfigResponse> {
    static constexpr std::tuple fields{
        required("status", &VeranoxSaveConfigResponse::status),
        required("path", &VeranoxSaveConfigResponse::path),
    };
};

template VeranoxSaveConfigResponse decodeRecord(const QByteArray &);
