// A store that logs to a scripted persistence.
#pragma once
#include "Log/VeranoxRuntimeLogFileError.h"
#include "Tests/Support/StoreWorld.h"
#include <QScopeGuard>

class ScriptedLog final : public VeranoxRuntimeLogPersisting {
public:
    explicit ScriptedLog(jobs::MainQueue &queue) : appending(queue), loading(queue) { }
    std::optional<QString> fileURL() const override { return std::nullopt; }
    jobs::Async<QList<VeranoxRuntimeLogEntry>> loadRecent(int limit) override
    {
        limits.append(limit);
        co_return valueOf(co_await loading.call());
    }
    jobs::Async<> append(QList<VeranoxRuntimeLogEntry> entries) override
    {
        EXPECT_FALSE(std::exchange(m_busy, true)) << "two writes at once";
        const auto idle = qScopeGuard([this] { m_busy = false; });
        valueOf(co_await appending.call());
        written.append(std::move(entries));
    }

    FakeOperation<Nothing, std::exception_ptr> appending;
    FakeOperation<QList<VeranoxRuntimeLogEntry>, std::exception_ptr> loading;
    QList<int> limits;
    QList<VeranoxRuntimeLogEntry> written;

private:
    template <class T> static T valueOf(std::expected<T, std::exception_ptr> answer)
    {
        if (!answer)
            std::rethrow_exception(answer.error());
        return *std::move(answer);
    }
    bool m_busy = false;
};

class StoreLogWorld : public StoreWorld {
protected:
    StoreLogWorld()
    {
        auto scripted = std::make_unique<ScriptedLog>(world.queue);
        auto client = std::make_unique<FakeAPIClient>(world.queue);
        file = scripted.get();
        service = client.get();
        store = std::make_unique<VeranoxStore>(world.queue,
            VeranoxStore::Collaborators{.apiClient = std::move(client),
                .runtimeClient = std::make_unique<FakeRuntimeClient>(),
                .diagnostics = diagnostics,
                .failureNotifier = nullptr,
                .runtimeLogPersistence = std::move(scripted),
                .sessionIdentity = VeranoxSessionIdentity::of({{QStringLiteral("CFBundleVersion"), QStringLiteral("7")},
                    {QStringLiteral("CFBundleIdentifier"), QStringLiteral("app.veranox")}})});
    }
    ~StoreLogWorld() override { store.reset(); }

    const VeranoxRuntimeLogEntry &logged(const QString &message, const VeranoxLogDetails &details = {})
    {
        store->appendLog(message, details);
        return store->runtimeLog().last();
    }

    void prepare()
    {
        jobs::JobScope scope(world.queue);
        const auto job = scope.start(store->prepareRuntimeLog());
        world.run();
        EXPECT_TRUE(job.finished());
    }

    static VeranoxRuntimeLogEntry stored(const QString &message)
    {
        return {.id = QUuid::createUuid(), .timestamp = QDateTime::currentDateTimeUtc(), .message = message};
    }

    VeranoxDiagnosticSession diagnostics = VeranoxDiagnosticSession::make();
    ScriptedLog *file = nullptr; // owned by the store
};
