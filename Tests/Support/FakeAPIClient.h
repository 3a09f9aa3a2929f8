// A service that answers as the test says. Each operation is scripted by itself: it answers at once, fails, or is held
// until the test lets it go.
#pragma once
#include "API/VeranoxAPIClientProtocol.h"
#include "API/VeranoxCancellation.h"
#include "Core/Jobs/Jobs.h"
#include <expected>
#include <functional>

template <class T> class FakeOperation {
public:
    using Answer = std::expected<T, std::exception_ptr>;

    explicit FakeOperation(jobs::MainQueue &queue, T answer = T()) : m_queue(queue), m_answer(std::move(answer)) { }

    FakeOperation(const FakeOperation &) = delete;
    FakeOperation &operator=(const FakeOperation &) = delete;

    void answer(T value) { m_answer = std::move(value); }
    template <class E> void fail(E error) { m_answer = std::unexpected(std::make_exception_ptr(std::move(error))); }
    void hold() { m_holding = true; }

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

    int calls = 0;
    QStringList correlationIDs;

private:
    static T value(const Answer &answer)
    {
        if (!answer)
            std::rethrow_exception(answer.error());
        return *answer;
    }

    jobs::MainQueue &m_queue;
    Answer m_answer;
    bool m_holding = false;
    QList<jobs::Resolver<Answer>> m_held;
};

struct Nothing { }; // the answer of an operation that has none

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
          shutdownRequest(queue)
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

    FakeOperation<bool> health;
    FakeOperation<QList<VeranoxProfile>> profiles;
    FakeOperation<VeranoxConfig> config;
    FakeOperation<VeranoxEditableConfig> editableConfig;
    FakeOperation<VeranoxEnvironment> environment;
    FakeOperation<QList<VeranoxTunnel>> tunnels;
    FakeOperation<QList<VeranoxPublication>> publications;
    FakeOperation<Nothing> shutdownRequest;

    // How often each read of a refresh was asked for; fails a test that expects them to go together.
    QList<int> refreshCalls() const
    {
        return {
            profiles.calls, config.calls, editableConfig.calls, environment.calls, tunnels.calls, publications.calls};
    }
};
