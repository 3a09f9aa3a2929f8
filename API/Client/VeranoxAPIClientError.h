#pragma once
#include "Base/Failures/VeranoxError.h"

// A request that brought no answer: nothing listens, the connection broke, what came is no HTTP, or the time
// was up.
class VeranoxAPIClientError final : public VeranoxError {
public:
    enum class Case { localServiceUnavailable };
    static constexpr Case localServiceUnavailable = Case::localServiceUnavailable;

    explicit VeranoxAPIClientError(Case which) : m_case(which) { }

    QString localizedDescription() const override;
    Case which() const { return m_case; }

private:
    Case m_case;
};
