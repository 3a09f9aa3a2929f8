#pragma once
#include <QAbstractNativeEventFilter>
#include <QObject>

struct xcb_connection_t;

// Tells when a system tray of the XEmbed kind may have come to or gone from the X display, from the events that Qt
// receives anyway. Does nothing where there is no X. Main thread only.
class XEmbedTrayWatcher : public QObject, private QAbstractNativeEventFilter {
    Q_OBJECT

public:
    explicit XEmbedTrayWatcher(QObject *parent = nullptr);
    ~XEmbedTrayWatcher() override;

Q_SIGNALS:
    // Emitted in a later turn than the event, when Qt has seen it too. May be emitted for nothing.
    void maybeChanged();

private:
    bool nativeEventFilter(const QByteArray &eventType, void *message, qintptr *result) override;
    void announceLater();

    quint32 m_managerAtom = 0; // the client message with which a tray announces itself
    bool m_announcing = false;
};
