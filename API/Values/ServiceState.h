#pragma once
#include "API/Records/VeranoxStatusBadge.h"
#include <QMetaType>
#include <QString>
#include <utility>

// The local service as the application sees it. A value: two states are equal when kind and message are.
class ServiceState {
    Q_GADGET

public:
    enum class Kind {
        starting, // a start or restart is under way
        online, // the last health probe or refresh succeeded
        offline, // nothing has been started, or it was stopped in order
        error // the service failed; message() is shown to the user
    };
    Q_ENUM(Kind)

    ServiceState() = default; // offline

    static ServiceState starting() { return ServiceState(Kind::starting, {}); }
    static ServiceState online() { return ServiceState(Kind::online, {}); }
    static ServiceState offline() { return {}; }
    static ServiceState error(QString message) { return ServiceState(Kind::error, std::move(message)); }

    Kind kind() const { return m_kind; }
    bool isOnline() const { return m_kind == Kind::online; }

    // The finished sentence of an error; empty in every other state.
    QString message() const { return m_message; }

    // The word that stands for this state in log fields.
    QString logWord() const;

    // The word that a person reads.
    QString title() const;

    // The same with how much of a person's attention it asks for.
    VeranoxStatusBadge badge() const;

    bool operator==(const ServiceState &) const = default;

private:
    ServiceState(Kind kind, QString message) : m_kind(kind), m_message(std::move(message)) { }

    Kind m_kind = Kind::offline;
    QString m_message;
};
