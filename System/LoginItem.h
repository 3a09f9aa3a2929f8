#pragma once
#include <QString>
#include <expected>
#include <memory>

// Whether the system starts the application when the user logs in. Main thread only.
class LoginItem {
public:
    LoginItem() = default;
    LoginItem(const LoginItem &) = delete;
    LoginItem &operator=(const LoginItem &) = delete;
    virtual ~LoginItem() = default;

    virtual bool isEnabled() const = 0;

    // Asks the system to start the application at login, or no longer; the error is a finished sentence.
    virtual std::expected<void, QString> add() = 0;
    virtual std::expected<void, QString> remove() = 0;
};
