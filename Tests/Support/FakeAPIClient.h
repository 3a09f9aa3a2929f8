// A service that answers as the test says. Each operation is scripted by itself: it answers at once, fails, or is held
// until the test lets it go.
#pragma once
#include "API/Client/VeranoxAPIClientProtocol.h"
#include "API/Records/VeranoxEditablePublication.h"
#include "API/Records/VeranoxEditableTunnel.h"
#include "API/Records/VeranoxFeedback.h"
#include "API/Records/VeranoxPathReport.h"
#include "API/Records/VeranoxProfileAction.h"
#include "Base/Failures/Cancellation.h"
#include "Base/Jobs/Jobs.h"
#include "Base/Json/Json.h"
#include <expected>
#include <functional>

// An operation that fails with exceptions names std::exception_ptr as its failure.
template <class T, class Failure = VeranoxAPIFailure> class FakeOperation {
public:
    using Answer = std::expected<T, Failure>;

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
        if constexpr (std::is_same_v<E, Failure>)
            m_answer = std::unexpected(std::move(error));
        else
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

    jobs::Async<Answer> call()
    {
        ++calls;
        correlationIDs.append(jobs::ambient().value_or(QString()));
        if (jobs::this_job::cancelled())
            co_return std::unexpected(cancellation());
        if (!m_holding)
            co_return m_answer;
        const jobs::Completion<Answer> completion(m_queue);
        const auto resolver = completion.resolver();
        m_held.append(resolver);
        const std::stop_callback cancelled(
            resolver.stopToken(), [resolver] { resolver.resolve(std::unexpected(cancellation())); });
        co_return co_await completion;
    }

    // The same, and remembers with what it was called.
    jobs::Async<Answer> callWith(QString argument)
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
    static Failure cancellation()
    {
        if constexpr (std::is_same_v<Failure, VeranoxAPIFailure>)
            return VeranoxAPIFailure::cancelled();
        else
            return std::make_exception_ptr(Cancellation());
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
        co_return (co_await health.call()).value_or(false); // this operation never fails
    }
    VeranoxAPICall<QList<VeranoxProfile>> fetchProfiles() override { return profiles.call(); }
    VeranoxAPICall<VeranoxConfig> fetchConfig() override { return config.call(); }
    VeranoxAPICall<VeranoxEditableConfig> fetchEditableConfig() override { return editableConfig.call(); }
    VeranoxAPICall<VeranoxEnvironment> fetchEnvironment() override { return environment.call(); }
    VeranoxAPICall<QList<VeranoxTunnel>> fetchTunnels() override { return tunnels.call(); }
    VeranoxAPICall<QList<VeranoxPublication>> fetchPublications() override { return publications.call(); }
    VeranoxAPICall<> shutdown() override { return dropping(shutdownRequest.call()); }

    VeranoxAPICall<> saveConfig(VeranoxEditableConfig document) override
    {
        return dropping(configSave.callWith(QString::fromUtf8(encodeRecord(document))));
    }
    VeranoxAPICall<VeranoxProfileAction> login(QString profileName) override
    {
        return loginRequest.callWith(profileName);
    }
    VeranoxAPICall<VeranoxProfileAction> logout(QString profileName) override
    {
        return logoutRequest.callWith(profileName);
    }
    VeranoxAPICall<VeranoxPathReport> diagnose(QString target) override { return diagnosis.callWith(target); }
    VeranoxAPICall<QList<VeranoxTunnel>> saveTunnel(
        QString name, std::optional<QString> originalName, VeranoxEditableTunnel tunnel) override
    {
        return tunnelSave.callWith(
            QString::fromUtf8(encodeRecord(VeranoxTunnelSaveRequest{name, originalName, tunnel})));
    }
    VeranoxAPICall<QList<VeranoxTunnel>> deleteTunnel(QString name) override { return tunnelDeletion.callWith(name); }
    VeranoxAPICall<QList<VeranoxTunnel>> startTunnel(QString name) override { return tunnelStart.callWith(name); }
    VeranoxAPICall<QList<VeranoxTunnel>> stopTunnel(QString name) override { return tunnelStop.callWith(name); }
    VeranoxAPICall<QList<VeranoxTunnel>> restartTunnel(QString name) override { return tunnelRestart.callWith(name); }
    VeranoxAPICall<> setTunnelSecret(QString name, QString password) override
    {
        return dropping(tunnelSecret.callWith(name + u' ' + password));
    }
    VeranoxAPICall<QList<VeranoxPublication>> savePublication(
        QString name, std::optional<QString> originalName, VeranoxEditablePublication publication) override
    {
        return publicationSave.callWith(
            QString::fromUtf8(encodeRecord(VeranoxPublicationSaveRequest{name, originalName, publication})));
    }
    VeranoxAPICall<QList<VeranoxPublication>> deletePublication(QString name) override
    {
        return publicationDeletion.callWith(name);
    }
    VeranoxAPICall<QList<VeranoxPublication>> startPublication(QString name) override
    {
        return publicationStart.callWith(name);
    }
    VeranoxAPICall<QList<VeranoxPublication>> stopPublication(QString name) override
    {
        return publicationStop.callWith(name);
    }
    VeranoxAPICall<QList<VeranoxPublication>> restartPublication(QString name) override
    {
        return publicationRestart.callWith(name);
    }
    VeranoxAPICall<VeranoxFeedbackResult> submitFeedback(QString message, QString kind, QString contact) override
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

private:
    static VeranoxAPICall<> dropping(VeranoxAPICall<Nothing> call)
    {
        const auto result = co_await std::move(call);
        if (!result)
            co_return std::unexpected(result.error());
        co_return VeranoxAPIResult<>();
    }
};
