#pragma once
#include <QObject>
#include <QtQml/qqmlregistration.h>

// What a mark says by its colour. The words always stand beside it.
class VeranoxTone : public QObject {
    Q_OBJECT
    QML_NAMED_ELEMENT(Tone)
    QML_UNCREATABLE("A vocabulary")

public:
    enum Tone { Gray, FaintGray, Green, Orange, Red };
    Q_ENUM(Tone)
};
