// A service that answers as the test says. Each operation is scripted by itself: it answers at once, fails, or is held
// until the test lets it go.
#pragma once
#include "API/Client/VeranoxAPIClientProtocol.h"
#include "API/Records/VeranoxEditablePublication.h"
#include "API/Records/VeranoxEditableTunnel.h"
#include "API/Records/VeranoxFeedback.h"
#include "API/Records/VeranoxPathReport.h"
#include "API/Records/VeranoxProfileAction.h"
#include "Base/Failures/VeranoxCancellation.h"
#include "Base/Jobs/Jobs.h"
#include "Base/Json/Json.h"
#include <expected>
#include <functional>

template <class T> class FakeOperation {
public:
    using Answer = std::expected<T, std::exception_ptr>;

    explicit FakeOperation(jobs::MainQueue &queue, T answer = T()) : m_queue(queue), m_answer(std::move(answer)) { }

    FakeOperation(const FakeOperation &) = delete;
    FakeOperation &operator=(const FakeOperation &) = delete;

    // An operation that must be announced before it is called.
    FakeOperation(jobs::MainQueue &queue, QString name)
        : m_queue(queue),
          m_name(std::move(name)),
          m_announced(false) { }

    void answer(T value)
    {
        m_announced = true;
        m_answer = std::move(value);
    }
    template <class E> void fail(E error)
    {
        m_announced = true;
        m_answer = std::unexpected(std::make_exception_ptr(std::move(error)));
    }
    void hold() { m_announced = m_holding = true; }

    // Answers every held call, with what the operation answers at the time of the release, and holds no more.
    void release()
    {
        m_holding = false;
        for (const auto &call : std::exchange(m_held, {}))
            call.resolve(m_answer);
    }

    jobs::Async<T> call()
    {
        ++calls;
        correlationIDs.append(jobs::ambient().value_or(QString()));
        if (jobs::this_job::cancelled())
            throw VeranoxCancellation();
        if (!m_holding)
            co_return value(m_answer);
        const jobs::Completion<Answer> completion(m_queue);
        const auto resolver = completion.resolver();
        m_held.append(resolver);
        const std::stop_callback cancelled(resolver.stopToken(),
            [resolver] { resolver.resolve(std::unexpected(std::make_exception_ptr(VeranoxCancellation()))); });
        co_return value(co_await completion);
    }

    // The same, and remembers with what it was called.
    jobs::Async<T> callWith(QString argument)
    {
        if (!m_announced)
            qFatal("%s(%s) was called, which the test did not announce", qPrintable(m_name), qPrintable(argument));
        arguments.append(std::move(argument));
        return call();
    }

    int calls = 0;
    QStringList arguments; // of callWith()
    QStringList correlationIDs;

private:
    static T value(const Answer &answer)
    {
        if (!answer)
            std::rethrow_exception(answer.error());
        return *answer;
    }

    jobs::MainQueue &m_queue;
    const QString m_name;
    Answer m_answer;
    bool m_announced = true;
    bool m_holding = false;
    QList<jobs::Resolver<Answer>> m_held;
};

struct Nothing { }; // the answer of an operation that has none

// Reads answer with empty records until the test says otherwise; any other operation must be announced (by answer(),
// fail() or hold()), or its call ends the test.
class FakeAPIClient final : public VeranoxAPIClientProtocol {
public:
    explicit FakeAPIClient(jobs::MainQueue &queue)
        : health(queue, true),
          profiles(queue),
          config(queue),
          editableConfig(queue),
          environment(queue),
          tunnels(queue),
          publications(queue),
          shutdownRequest(queue),
          configSave(queue, QStringLiteral("saveConfig")),
          loginRequest(queue, QStringLiteral("login")),
          logoutRequest(queue, QStringLiteral("logout")),
          diagnosis(queue, QStringLiteral("diagnose")),
          tunnelSave(queue, QStringLiteral("saveTunnel")),
          tunnelDeletion(queue, QStringLiteral("deleteTunnel")),
          tunnelStart(queue, QStringLiteral("startTunnel")),
          tunnelStop(queue, QStringLiteral("stopTunnel")),
          tunnelRestart(queue, QStringLiteral("restartTunnel")),
          tunnelSecret(queue, QStringLiteral("setTunnelSecret")),
          publicationSave(queue, QStringLiteral("savePublication")),
          publicationDeletion(queue, QStringLiteral("deletePublication")),
          publicationStart(queue, QStringLiteral("startPublication")),
          publicationStop(queue, QStringLiteral("stopPublication")),
          publicationRestart(queue, QStringLiteral("restartPublication")),
          feedback(queue, QStringLiteral("submitFeedback"))
    {
    }

    jobs::Async<bool> healthCheck() override
    {
        try {
            co_return co_await health.call();
        } catch (const VeranoxCancellation &) { // this operation never fails
            co_return false;
        }
    }
    jobs::Async<QList<VeranoxProfile>> fetchProfiles() override { return profiles.call(); }
    jobs::Async<VeranoxConfig> fetchConfig() override { return config.call(); }
    jobs::Async<VeranoxEditableConfig> fetchEditableConfig() override { return editableConfig.call(); }
    jobs::Async<VeranoxEnvironment> fetchEnvironment() override { return environment.call(); }
    jobs::Async<QList<VeranoxTunnel>> fetchTunnels() override { return tunnels.call(); }
    jobs::Async<QList<VeranoxPublication>> fetchPublications() override { return publications.call(); }
    jobs::Async<void> shutdown() override { co_await shutdownRequest.call(); }

    jobs::Async<void> saveConfig(VeranoxEditableConfig document) override
    {
        co_await configSave.callWith(QString::fromUtf8(encodeRecord(document)));
    }
    jobs::Async<VeranoxProfileAction> login(QString profileName) override { return loginRequest.callWith(profileName); }
    jobs::Async<VeranoxProfileAction> logout(QString profileName) override
    {
        return logoutRequest.callWith(profileName);
    }
    jobs::Async<VeranoxPathReport> diagnose(QString target) override { return diagnosis.callWith(target); }
    jobs::Async<QList<VeranoxTunnel>> saveTunnel(
        QString name, std::optional<QString> originalName, VeranoxEditableTunnel tunnel) override
    {
        return tunnelSave.callWith(
            QString::fromUtf8(encodeRecord(VeranoxTunnelSaveRequest{name, originalName, tunnel})));
    }
    jobs::Async<QList<VeranoxTunnel>> deleteTunnel(QString name) override { return tunnelDeletion.callWith(name); }
    jobs::Async<QList<VeranoxTunnel>> startTunnel(QString name) override { return tunnelStart.callWith(name); }
    jobs::Async<QList<VeranoxTunnel>> stopTunnel(QString name) override { return tunnelStop.callWith(name); }
    jobs::Async<QList<VeranoxTunnel>> restartTunnel(QString name) override { return tunnelRestart.callWith(name); }
    jobs::Async<void> setTunnelSecret(QString name, QString password) override
    {
        co_await tunnelSecret.callWith(name + u' ' + password);
    }
    jobs::Async<QList<VeranoxPublication>> savePublication(
        QString name, std::optional<QString> originalName, VeranoxEditablePublication publication) override
    {
        return publicationSave.callWith(
            QString::fromUtf8(encodeRecord(VeranoxPublicationSaveRequest{name, originalName, publication})));
    }
    jobs::Async<QList<VeranoxPublication>> deletePublication(QString name) override
    {
        return publicationDeletion.callWith(name);
    }
    jobs::Async<QList<VeranoxPublication>> startPublication(QString name) override
    {
        return publicationStart.callWith(name);
    }
    jobs::Async<QList<VeranoxPublication>> stopPublication(QString name) override
    {
        return publicationStop.callWith(name);
    }
    jobs::Async<QList<VeranoxPublication>> restartPublication(QString name) override
    {
        return publicationRestart.callWith(name);
    }
    jobs::Async<VeranoxFeedbackResult> submitFeedback(QString message, QString kind, QString contact) override
    {
        return feedback.callWith(kind + u' ' + message + u' ' + contact);
    }

    FakeOperation<bool> health;
    FakeOperation<QList<VeranoxProfile>> profiles;
    FakeOperation<VeranoxConfig> config;
    FakeOperation<VeranoxEditableConfig> editableConfig;
    FakeOperation<VeranoxEnvironment> environment;
    FakeOperation<QList<VeranoxTunnel>> tunnels;
    FakeOperation<QList<VeranoxPublication>> publications;
    FakeOperation<Nothing> shutdownRequest;

    FakeOperation<Nothing> configSave;
    FakeOperation<VeranoxProfileAction> loginRequest;
    FakeOperation<VeranoxProfileAction> logoutRequest;
    FakeOperation<VeranoxPathReport> diagnosis;
    FakeOperation<QList<VeranoxTunnel>> tunnelSave;
    FakeOperation<QList<VeranoxTunnel>> tunnelDeletion;
    FakeOperation<QList<VeranoxTunnel>> tunnelStart;
    FakeOperation<QList<VeranoxTunnel>> tunnelStop;
    FakeOperation<QList<VeranoxTunnel>> tunnelRestart;
    FakeOperation<Nothing> tunnelSecret;
    FakeOperation<QList<VeranoxPublication>> publicationSave;
    FakeOperation<QList<VeranoxPublication>> publicationDeletion;
    FakeOperation<QList<VeranoxPublication>> publicationStart;
    FakeOperation<QList<VeranoxPublication>> publicationStop;
    FakeOperation<QList<VeranoxPublication>> publicationRestart;
    FakeOperation<VeranoxFeedbackResult> feedback;

    // How often each read of a refresh was asked for; fails a test that expects them to go together.
    QList<int> refreshCalls() const
    {
        return {
            profiles.calls, config.calls, editableConfig.calls, environment.calls, tunnels.calls, publications.calls};
    }
};
