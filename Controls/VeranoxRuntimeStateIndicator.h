#pragma once
#include "API/Records/VeranoxPublication.h"
#include "API/Records/VeranoxTunnel.h"
#include "Controls/VeranoxTone.h"

// The small mark that shows the runtime state of a tunnel or a publication, with its tool tip.
struct VeranoxRuntimeStateIndicator {
    enum class Mark {
        spinner, // small, while it starts
        blocked, // the symbol "nosign"
        dot // filled, in color()
    };

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
    VeranoxTone::Tone color() const;
    QString help() const;

    bool operator==(const VeranoxRuntimeStateIndicator &) const = default;
};
