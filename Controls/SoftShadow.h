#pragma once
#include <QQuickPaintedItem>

// The soft shadow of the rounded panel that lies in its middle, `extent` pixels from each edge. Painted once for each
// size: software has no blur.
class SoftShadow : public QQuickPaintedItem {
    Q_OBJECT
    QML_NAMED_ELEMENT(SoftShadow)
    Q_PROPERTY(double extent MEMBER m_extent NOTIFY changed)
    Q_PROPERTY(double radius MEMBER m_radius NOTIFY changed)
    Q_PROPERTY(double strength MEMBER m_strength NOTIFY changed)

public:
    explicit SoftShadow(QQuickItem *parent = nullptr);

    void paint(QPainter *painter) override;

Q_SIGNALS:
    void changed();

private:
    double m_extent = 0;
    double m_radius = 0;
    double m_strength = 0; // of the shadow right at the panel, from 0 to 1
};
