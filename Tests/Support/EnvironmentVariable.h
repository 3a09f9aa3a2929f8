// A variable of the environment for as long as this lives; then it is as it was before.
#pragma once
#include <QByteArray>
#include <QtGlobal>
#include <optional>

class EnvironmentVariable {
public:
    // Without a value it is not set.
    EnvironmentVariable(const char *name, const std::optional<QByteArray> &value) : m_name(name), m_before(of(name))
    {
        set(value);
    }
    ~EnvironmentVariable() { set(m_before); }
    EnvironmentVariable(const EnvironmentVariable &) = delete;
    EnvironmentVariable &operator=(const EnvironmentVariable &) = delete;

private:
    static std::optional<QByteArray> of(const char *name)
    {
        return qEnvironmentVariableIsSet(name) ? std::optional(qgetenv(name)) : std::nullopt;
    }
    void set(const std::optional<QByteArray> &value) const { value ? qputenv(m_name, *value) : qunsetenv(m_name); }

    const char *m_name;
    std::optional<QByteArray> m_before;
};
