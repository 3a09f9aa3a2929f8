#pragma once
#include "API/VeranoxError.h"

// JSON from the service that does not have the shape of the record it should be.
class VeranoxDecodingError final : public VeranoxError {
public:
    // `place` is a path such as "[3].status.ok", or empty for the whole text; `expectation` says what should stand
    // there, such as "a number".
    VeranoxDecodingError(QString place, QString expectation);

    QString localizedDescription() const override;

    const QString &place() const { return m_place; }
    const QString &expectation() const { return m_expectation; }

private:
    QString m_place;
    QString m_expectation;
};
