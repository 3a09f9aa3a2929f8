// A keyring in memory that remembers what was asked of it.
#pragma once
#include "Base/Jobs/Jobs.h"
#include "Tunnels/VeranoxTunnelSecretStoring.h"
#include <QMap>
#include <QStringList>

class FakeTunnelSecrets final : public VeranoxTunnelSecretStoring {
public:
    jobs::Async<std::optional<QString>> password(QString tunnelName, Unlocking unlocking) override
    {
        note(unlocking == Unlocking::ask ? "read" : "read quietly", tunnelName);
        co_await jobs::sleep(delay);
        const auto item = items.constFind(tunnelName);
        co_return item == items.constEnd() ? std::nullopt : std::optional(*item);
    }
    jobs::Async<bool> hasPassword(QString tunnelName) override
    {
        note("look for", tunnelName);
        co_return items.contains(tunnelName);
    }
    jobs::Async<bool> setPassword(QString password, QString tunnelName) override
    {
        note("write", tunnelName);
        co_await jobs::sleep(delay);
        if (!isBroken)
            items.insert(tunnelName, password);
        co_return !isBroken;
    }
    jobs::Async<> deletePassword(QString tunnelName) override
    {
        note("delete", tunnelName);
        co_await jobs::sleep(delay);
        items.remove(tunnelName);
    }
    QString problem() const override { return {}; }

    QMap<QString, QString> items; // password by tunnel
    QStringList calls;
    bool isBroken = false; // writes fail
    jobs::Clock::Duration delay = {}; // how long each answer takes

private:
    void note(const char *what, const QString &tunnelName)
    {
        calls.append(QString::fromLatin1(what) + QLatin1Char(' ') + tunnelName);
    }
};
