#pragma once
#include "System/VeranoxGlobalHotKeyController.h"
#include <QDBusConnection>
#include <QDBusMessage>

// A global shortcut through the desktop's portal, which asks the person. A session can bind once, so that a change of
// the combination makes a new session. Without a portal that knows global shortcuts nothing is ever registered.
class PortalHotKey final : public VeranoxGlobalHotKeyController {
    Q_OBJECT

public:
    explicit PortalHotKey(QDBusConnection bus);
    ~PortalHotKey() override;

    void configure(std::optional<VeranoxGlobalShortcut> shortcut) override;
    bool isRegistered() const override { return m_isBound; }

private Q_SLOTS:
    void sessionAnswered(const QDBusMessage &response);
    void bindAnswered(const QDBusMessage &response);
    void activated(const QDBusMessage &message);

private:
    void createSession();
    void bind();
    void closeSession();
    void close(const QString &session);
    QString nextToken();
    void expectAnswer(const QString &token, const char *slot);
    bool isExpected(const QDBusMessage &response) const;

    QDBusConnection m_bus;
    std::optional<VeranoxGlobalShortcut> m_shortcut;
    QString m_session; // its object path; empty without one
    QString m_expected; // the token of the request whose answer still counts
    bool m_isBound = false;
    int m_tokens = 0;
};
