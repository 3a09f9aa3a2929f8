#pragma once
#include <QObject>
#include <QString>
#include <QtQml/qqmlregistration.h>

// The symbols that views name, such as "arrow.clockwise", as glyphs of the embedded font. Main thread only.
class Symbols final : public QObject {
    Q_OBJECT
    QML_NAMED_ELEMENT(Symbols)
    QML_SINGLETON
    Q_PROPERTY(QString family READ family CONSTANT)

public:
    explicit Symbols(QObject *parent = nullptr);

    // The font family that has the glyphs.
    QString family() const { return m_family; }

    // The glyph of a symbol, as text; empty for a name that no symbol has.
    Q_INVOKABLE static QString glyph(const QString &name);

private:
    QString m_family;
};
