#pragma once
#include "API/Records/VeranoxPublication.h"
#include "API/Records/VeranoxTunnel.h"

// The small mark that shows the runtime state of a tunnel or a publication, with its tool tip.
struct VeranoxRuntimeStateIndicator {
    Q_GADGET
    Q_PROPERTY(Mark mark READ mark)
    Q_PROPERTY(Color color READ color)
    Q_PROPERTY(QString help READ help)

public:
    enum class Mark {
        spinner, // small, while it starts
        blocked, // the symbol "nosign"
        dot // filled, in color()
    };
    Q_ENUM(Mark)

    enum class Color { faint /* secondary at half opacity */, secondary, green, orange, red };
    Q_ENUM(Color)

    // The words that differ between the two kinds.
    struct Vocabulary {
        QString startingHelp;
        QString blockedHelp;

        static Vocabulary tunnels();
        static Vocabulary publications();

        bool operator==(const Vocabulary &) const = default;
    };

    bool disabled = false;
    QString state;
    QString lastError; // as received
    qint64 activeConns = 0;
    bool unreachable = false;
    Vocabulary vocabulary;

    VeranoxRuntimeStateIndicator() = default;
    explicit VeranoxRuntimeStateIndicator(const VeranoxTunnel &tunnel);
    explicit VeranoxRuntimeStateIndicator(const VeranoxPublication &publication);

    Mark mark() const;
    Color color() const;
    QString help() const;

    bool operator==(const VeranoxRuntimeStateIndicator &) const = default;
};

Q_DECLARE_METATYPE(VeranoxRuntimeStateIndicator)
