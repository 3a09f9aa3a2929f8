#pragma once
#include <QObject>
#include <QtQml/qqmlregistration.h>
#include <optional>

// How high the popover is. Main thread only.
class VeranoxMenuPresentation : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by VeranoxMenuView")
    Q_PROPERTY(double viewportHeight READ viewportHeight NOTIFY changed)
    Q_PROPERTY(bool requiresScrolling READ requiresScrolling NOTIFY changed)

public:
    using QObject::QObject;

    // In logical pixels, as every length here.
    double viewportHeight() const { return m_viewportHeight; }
    bool requiresScrolling() const { return m_requiresScrolling; }

    // Takes the height that the content wants and the height of what is free of panels on the screen, if there is one.
    // The popover leaves 24 of it and scrolls when that is not enough.
    void update(double naturalContentHeight, std::optional<double> availableScreenHeight);

    // The same with the screen as it was told last.
    Q_INVOKABLE void adoptContentHeight(double naturalContentHeight);

    // The same with the content as it was told last.
    void adoptScreen(std::optional<double> availableScreenHeight);

Q_SIGNALS:
    void changed();

private:
    double m_naturalContentHeight = 1.0;
    std::optional<double> m_availableScreenHeight;
    double m_viewportHeight = 1.0;
    bool m_requiresScrolling = false;
};
