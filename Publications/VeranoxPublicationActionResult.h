#pragma once
#include <QMetaType>
#include <QString>

// How an operation on a publication ended, as one sentence for a person, if there is something to say.
struct VeranoxPublicationActionResult {
    Q_GADGET
    Q_PROPERTY(Kind kind MEMBER kind)
    Q_PROPERTY(QString message MEMBER message)

public:
    enum class Kind { success, failure };
    Q_ENUM(Kind)

    static VeranoxPublicationActionResult success(const QString &message) { return {Kind::success, message}; }
    static VeranoxPublicationActionResult failure(const QString &message) { return {Kind::failure, message}; }
    static VeranoxPublicationActionResult cancelled() { return {Kind::failure, {}, true}; }

    Kind kind = Kind::failure;
    QString message;
    bool isCancelled = false; // the job that waited was: a failure of which nothing is said

    bool isSuccess() const { return kind == Kind::success; }

    bool operator==(const VeranoxPublicationActionResult &) const = default;
};

Q_DECLARE_METATYPE(VeranoxPublicationActionResult)
