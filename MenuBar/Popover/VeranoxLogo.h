#pragma once
#include <QColor>
#include <QQuickPaintedItem>

// The product's mark, drawn sharp at any scale.
class VeranoxLogo : public QQuickPaintedItem {
    Q_OBJECT
    QML_NAMED_ELEMENT(Logo)
    Q_PROPERTY(QColor foreground READ foreground WRITE setForeground NOTIFY foregroundChanged)

public:
    explicit VeranoxLogo(QQuickItem *parent = nullptr);

    void paint(QPainter *painter) override;
    QColor foreground() const { return m_foreground; }
    void setForeground(const QColor &color);

Q_SIGNALS:
    void foregroundChanged();

private:
    QColor m_foreground;
};
