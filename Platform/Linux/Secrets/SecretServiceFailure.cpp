#include <gio/gio.h>
#include <libsecret/secret.h>
// GLib comes before Qt, whose keywords would be its names.
#include "Platform/Linux/Secrets/SecretServiceFailure.h"
#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace {

struct Code {
    GQuark domain;
    int code;

    bool isOf(const GError &error) const { return g_error_matches(&error, domain, code) != 0; }
};

template <std::size_t count> bool isAmong(const GError &error, const std::array<Code, count> &codes)
{
    return std::ranges::any_of(codes, [&](const Code &code) { return code.isOf(error); });
}

bool isAbsent(const GError &error)
{
    return isAmong(error,
        std::array{Code{G_DBUS_ERROR, G_DBUS_ERROR_SERVICE_UNKNOWN}, Code{G_DBUS_ERROR, G_DBUS_ERROR_NAME_HAS_NO_OWNER},
            Code{G_DBUS_ERROR, G_DBUS_ERROR_SPAWN_SERVICE_NOT_FOUND}});
}

// libsecret has no code of its own for it: a keyring that was started anew knows nothing of an earlier one's session.
Code forgottenSession()
{
    return {g_quark_from_static_string("veranox-secret-service"), 1};
}

// It went away while it was asked, or what was known of it is not true of the one in its place.
bool isOutOfDate(const GError &error)
{
    return forgottenSession().isOf(error)
        || isAmong(error,
            std::array{Code{G_DBUS_ERROR, G_DBUS_ERROR_SERVICE_UNKNOWN},
                Code{G_DBUS_ERROR, G_DBUS_ERROR_NAME_HAS_NO_OWNER}, Code{G_DBUS_ERROR, G_DBUS_ERROR_NO_REPLY},
                Code{G_DBUS_ERROR, G_DBUS_ERROR_DISCONNECTED}, Code{G_DBUS_ERROR, G_DBUS_ERROR_UNKNOWN_OBJECT},
                Code{G_DBUS_ERROR, G_DBUS_ERROR_UNKNOWN_METHOD}, Code{G_IO_ERROR, G_IO_ERROR_CLOSED},
                Code{SECRET_ERROR, SECRET_ERROR_NO_SUCH_OBJECT}});
}

QString sentenceOf(const GError &error)
{
    if (isAbsent(error))
        return u"This desktop has no keyring, so Veranox cannot keep SSH passwords. Install and start one, for example "
               "GNOME Keyring or KWallet, or type the password again after each start."_s;
    return u"The keyring did not do what Veranox asked of it: "_s + QString::fromUtf8(error.message);
}

} // namespace

void SecretServiceFailure::tellThemApart()
{
    const auto [domain, code] = forgottenSession();
    g_dbus_error_register_error(domain, code, "org.freedesktop.Secret.Error.NoSession");
}

SecretServiceFailure SecretServiceFailure::unanswered()
{
    SecretServiceFailure failure;
    failure.problem = u"The keyring gave no answer, so Veranox went on without it. Unlock it and try again."_s;
    return failure;
}

SecretServiceFailure::SecretServiceFailure(const GError &error)
    : problem(sentenceOf(error)),
      isStale(isOutOfDate(error))
{
}
