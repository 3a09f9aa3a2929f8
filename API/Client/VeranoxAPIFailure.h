#pragma once
#include "Base/Jobs/Async.h"
#include <QString>
#include <expected>

// What can go wrong on the way to the service and back. A value: nothing throws it.
struct VeranoxAPIFailure {
    enum class Kind {
        cancelled, // the calling job was cancelled meanwhile; never shown
        unavailable, // nothing listens, the connection broke, what came is no HTTP, or the time was up
        refused, // the service refused, and says why
        badResponse, // an answer that the service does not give: beyond the size limits, or a failure without a reason
        undecodable, // a successful answer whose body is not the record it should be
    };

    Kind kind = Kind::unavailable;
    int status = 0; // of the answer that refused
    QString text = {}; // the service's words as they stand, or a sentence on what could not be decoded

    static VeranoxAPIFailure cancelled() { return {.kind = Kind::cancelled}; }
    static VeranoxAPIFailure unavailable() { return {.kind = Kind::unavailable}; }
    static VeranoxAPIFailure refused(QString words, int status);
    static VeranoxAPIFailure badResponse() { return {.kind = Kind::badResponse}; }
    static VeranoxAPIFailure undecodable(QString sentence);

    bool isCancellation() const { return kind == Kind::cancelled; }

    // One finished sentence for a person; of a refusal, the service's own words.
    QString localizedDescription() const;

    bool operator==(const VeranoxAPIFailure &) const = default;
};

template <class T = void> using VeranoxAPIResult = std::expected<T, VeranoxAPIFailure>;

// A call of the service, to be awaited.
template <class T = void> using VeranoxAPICall = jobs::Async<VeranoxAPIResult<T>>;
