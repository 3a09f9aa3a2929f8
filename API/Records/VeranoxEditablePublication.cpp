#include "API/Records/VeranoxEditablePublication.h"
#include "Base/Json/Codec.h"

template <> struct json::Layout<VeranoxEditablePublication> {
    using Publication = VeranoxEditablePublication;
    static constexpr std::tuple fields{
        required("DisplayName", &Publication::displayName),
        required("Profile", &Publication::profile),
        required("Target", &Publication::target),
        required("Reach", &Publication::reach),
        required("Port", &Publication::port),
        required("TLS", &Publication::tls),
        required("Disabled", &Publication::disabled),
    };
};

template <> struct json::Layout<VeranoxPublicationSaveRequest> {
    using Request = VeranoxPublicationSaveRequest;
    static constexpr std::tuple fields{
        required("Name", &Request::name),
        field("OriginalName", &Request::originalName),
        required("Publication", &Request::publication),
    };
};

template VeranoxEditablePublication decodeRecord(const QByteArray &);
template QByteArray encodeRecord(const VeranoxEditablePublication &);
template VeranoxPublicationSaveRequest decodeRecord(const QByteArray &);
template QByteArray encodeRecord(const VeranoxPublicationSaveRequest &);
