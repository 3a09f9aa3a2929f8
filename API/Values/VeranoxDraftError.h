#pragma once
#include "Base/Failures/LocalizedError.h"
#include <expected>

// Why a draft cannot become a record: one finished sentence. The first problem only.
class VeranoxDraftError final : public LocalizedError {
public:
    explicit VeranoxDraftError(QString text);

    QString message;

    QString localizedDescription() const override;

    friend bool operator==(const VeranoxDraftError &left, const VeranoxDraftError &right)
    {
        return left.message == right.message;
    }
};

template <class Value> using VeranoxDraftResult = std::expected<Value, VeranoxDraftError>;

// The failing result with this sentence.
std::unexpected<VeranoxDraftError> draftError(const QString &message);
