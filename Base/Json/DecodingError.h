#pragma once
#include "Base/Failures/LocalizedError.h"

// JSON from the service that does not have the shape of the record it should be.
class DecodingError final : public LocalizedError {
public:
    // `place` is a path such as "[3].status.ok", or empty for the whole text; `expected` and `found` are kinds of
    // values such as "a number" and "text".
    DecodingError(QString place, QString expected, QString found);

    QString localizedDescription() const override;

    const QString &place() const { return m_place; }
    const QString &expected() const { return m_expected; }
    const QString &found() const { return m_found; }

private:
    QString m_place;
    QString m_expected;
    QString m_found;
};
