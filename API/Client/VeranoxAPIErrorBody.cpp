#include "API/Client/VeranoxAPIErrorBody.h"
#include "Base/Json/Codec.h"

template <> struct json::Layout<VeranoxAPIErrorBody> {
    static constexpr std::tuple fields{
        required("error", &VeranoxAPIErrorBody::error),
    };
};

template VeranoxAPIErrorBody decodeRecord(const QByteArray &);
