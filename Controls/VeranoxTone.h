#pragma once
#include "API/Records/VeranoxStatusBadge.h"
#include <QObject>
#include <QtQml/qqmlregistration.h>

// What a mark says by its colour. The words always stand beside it.
class VeranoxTone : public QObject {
    Q_OBJECT
    QML_NAMED_ELEMENT(Tone)
    QML_UNCREATABLE("A vocabulary")

public:
    // QML finds an enumerator by its name only when that begins with a capital letter.
    // NOLINTNEXTLINE(readability-identifier-naming)
    enum Tone { Gray, FaintGray, Green, Orange, Red };
    Q_ENUM(Tone)

    // The tone of a state that asks for that much attention.
    static Tone of(VeranoxStatusBadge::Kind kind);
};
