#include "API/Records/VeranoxFeedback.h"
#include "Base/Json/Codec.h"

template <> struct json::Layout<VeranoxFeedback> {
    static constexpr std::tuple fields{
        required("message", &VeranoxFeedback::message),
        required("kind", &VeranoxFeedback::kind),
        required("contact", &VeranoxFeedback::contact),
        required("appVersion", &VeranoxFeedback::appVersion),
        required("os", &VeranoxFeedback::os),
    };
};

template <> struct json::Layout<VeranoxFeedbackResult> {
    static constexpr std::tuple fields{
        field("url", &VeranoxFeedbackResult::url),
    };
};

template QByteArray encodeRecord(const VeranoxFeedback &);
template VeranoxFeedbackResult decodeRecord(const QByteArray &);
