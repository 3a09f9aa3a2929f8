#pragma once
#include <QByteArray>
#include <QString>
#include <exception>

// Base of every failure that a job of this application throws.
class LocalizedError : public std::exception {
public:
    // One finished sentence for a person.
    virtual QString localizedDescription() const = 0;

    // The same sentence as UTF-8. It is made at the first call: two threads must not make that call at once.
    const char *what() const noexcept override;

private:
    mutable QByteArray m_what;
};
