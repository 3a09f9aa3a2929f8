#pragma once
#include "API/Client/VeranoxAPIClientProtocol.h"
#include "API/Client/VeranoxConfigInvalidation.h"
#include "API/Client/VeranoxControlToken.h"
#include "API/Client/VeranoxDiagnosticSession.h"
#include "API/Client/VeranoxLoopbackTransport.h"
#include <QUrl>

// What the client tells of the program and the machine beside a user's feedback.
struct VeranoxClientIdentity {
    QString appVersion;
    QString os; // name and version, such as "macOS 14.5.0"
};

// The local service over its loopback control API. Its state belongs to the main thread; waiting for the network,
// reading the token and decoding happen in the transport's thread. Lives longer than the jobs that call it.
class VeranoxAPIClient final : public VeranoxAPIClientProtocol {
public:
    static constexpr auto requestTimeout = std::chrono::seconds(12); // from sending to the last byte, each attempt
    static constexpr auto healthTimeout = std::chrono::seconds(2); // likewise, for healthCheck()

    VeranoxAPIClient(jobs::MainQueue &queue, const QUrl &baseURL, VeranoxDiagnosticSession diagnostics,
        VeranoxClientIdentity identity, QString controlTokenPath = defaultControlTokenPath());

    jobs::Async<bool> healthCheck() override;
    VeranoxAPICall<QList<VeranoxProfile>> fetchProfiles() override;
    VeranoxAPICall<VeranoxConfig> fetchConfig() override;
    VeranoxAPICall<VeranoxEditableConfig> fetchEditableConfig() override;
    VeranoxAPICall<> saveConfig(VeranoxEditableConfig config) override;
    VeranoxAPICall<VeranoxProfileAction> login(QString profileName) override;
    VeranoxAPICall<VeranoxProfileAction> logout(QString profileName) override;
    VeranoxAPICall<> shutdown() override;
    VeranoxAPICall<VeranoxPathReport> diagnose(QString target) override;
    VeranoxAPICall<QList<VeranoxTunnel>> fetchTunnels() override;
    VeranoxAPICall<QList<VeranoxTunnel>> saveTunnel(
        QString name, std::optional<QString> originalName, VeranoxEditableTunnel tunnel) override;
    VeranoxAPICall<QList<VeranoxTunnel>> deleteTunnel(QString name) override;
    VeranoxAPICall<QList<VeranoxTunnel>> startTunnel(QString name) override;
    VeranoxAPICall<QList<VeranoxTunnel>> stopTunnel(QString name) override;
    VeranoxAPICall<QList<VeranoxTunnel>> restartTunnel(QString name) override;
    VeranoxAPICall<> setTunnelSecret(QString name, QString password) override;
    VeranoxAPICall<QList<VeranoxPublication>> fetchPublications() override;
    VeranoxAPICall<QList<VeranoxPublication>> savePublication(
        QString name, std::optional<QString> originalName, VeranoxEditablePublication publication) override;
    VeranoxAPICall<QList<VeranoxPublication>> deletePublication(QString name) override;
    VeranoxAPICall<QList<VeranoxPublication>> startPublication(QString name) override;
    VeranoxAPICall<QList<VeranoxPublication>> stopPublication(QString name) override;
    VeranoxAPICall<QList<VeranoxPublication>> restartPublication(QString name) override;
    VeranoxAPICall<VeranoxEnvironment> fetchEnvironment() override;
    VeranoxAPICall<VeranoxFeedbackResult> submitFeedback(QString message, QString kind, QString contact) override;

private:
    // Takes the body of a 2xx answer, in the transport's thread. Its failure is the call's.
    using BodyReader = std::function<VeranoxAPIResult<>(QByteArray)>;
    struct Call {
        QByteArray method;
        QString path; // relative to the base URL, percent-encoded, with its query
        std::optional<QByteArray> body = {}; // JSON
    };
    struct Answer {
        int status = 0; // 0: none came
        VeranoxAPIResult<> outcome = {}; // good: a 2xx with a good body
    };

    // The operations are written in these: one line each.
    template <class T> VeranoxAPICall<T> get(QString path);
    template <class T> VeranoxAPICall<T> getFromConfig();
    template <class T> VeranoxAPICall<T> write(VeranoxAPIWrite which, Call call);
    VeranoxAPICall<VeranoxProfileAction> actOnProfile(
        VeranoxAPIWrite which, const QString &name, const QString &action);
    VeranoxAPICall<QList<VeranoxTunnel>> actOnTunnel(VeranoxAPIWrite which, const QString &name, const QString &action);
    VeranoxAPICall<QList<VeranoxPublication>> actOnPublication(
        VeranoxAPIWrite which, const QString &name, const QString &action);

    // One request with its token and, for a write that was refused with 403, its second attempt.
    VeranoxAPICall<> requestData(Call call, BodyReader reader);
    VeranoxAPICall<QByteArray> requestConfigData();
    jobs::Async<Answer> attempt(VeranoxHTTPRequest request, BodyReader reader, jobs::Clock::Duration timeout);
    jobs::Async<Answer> exchange(VeranoxHTTPRequest request, BodyReader reader);
    jobs::Async<std::optional<QString>> controlToken();
    jobs::Async<void> inTransportThread(std::function<void()> work);
    VeranoxHTTPRequest makeRequest(
        const Call &call, const QString &correlationID, const std::optional<QString> &token, int attempt) const;

    jobs::MainQueue &m_queue;
    const QUrl m_baseURL;
    const VeranoxDiagnosticSession m_diagnostics;
    const VeranoxClientIdentity m_identity;
    const QString m_controlTokenPath;
    std::optional<QString> m_cachedControlToken;
    VeranoxLoopbackTransport m_transport;
    VeranoxConfigCache m_configCache;
};
