#include "API/Client/VeranoxAPIClient.h"
#include "API/Client/VeranoxAPIErrorBody.h"
#include "Base/Json/DecodingError.h"
#include "Base/Json/Json.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int forbidden = 403;

bool isSuccess(int status)
{
    return status >= 200 && status <= 299;
}

QString currentCorrelationID()
{
    const auto bound = VeranoxDiagnosticOperationContext::correlationID();
    return bound ? *bound : makeVeranoxIdentifier();
}

VeranoxAPIFailure refusalIn(const VeranoxHTTPResponse &response)
{
    try {
        return VeranoxAPIFailure::refused(decodeRecord<VeranoxAPIErrorBody>(response.body).error, response.status);
    } catch (const DecodingError &) {
        return VeranoxAPIFailure::badResponse();
    }
}

VeranoxAPIFailure failureOf(VeranoxTransportFailure failure)
{
    switch (failure) {
    case VeranoxTransportFailure::unreachable:
        break;
    case VeranoxTransportFailure::tooLarge:
        return VeranoxAPIFailure::badResponse();
    }
    return VeranoxAPIFailure::unavailable();
}

} // namespace

VeranoxAPIClient::VeranoxAPIClient(jobs::MainQueue &queue, const QUrl &baseURL, VeranoxDiagnosticSession diagnostics,
    VeranoxClientIdentity identity, QString controlTokenPath)
    : m_queue(queue),
      m_baseURL(baseURL),
      m_diagnostics(std::move(diagnostics)),
      m_identity(std::move(identity)),
      m_controlTokenPath(std::move(controlTokenPath)),
      m_transport(baseURL),
      m_configCache(queue, [this] { return requestConfigData(); })
{
}

jobs::Async<bool> VeranoxAPIClient::healthCheck()
{
    const Call call{.method = "GET", .path = u"/api/health"_s};
    const auto discardBody = [](const QByteArray &) { return VeranoxAPIResult<>(); };
    const Answer answer =
        co_await attempt(makeRequest(call, currentCorrelationID(), {}, 1), discardBody, healthTimeout);
    co_return answer.outcome.has_value();
}

VeranoxAPICall<> VeranoxAPIClient::requestData(Call call, BodyReader reader)
{
    const bool readOnly = call.method == "GET" || call.method == "HEAD";
    const QString correlationID = currentCorrelationID(); // one for both attempts
    std::optional<QString> token;
    if (!readOnly)
        token = co_await controlToken();
    Answer answer = co_await attempt(makeRequest(call, correlationID, token, 1), reader, requestTimeout);
    if (!readOnly && answer.status == forbidden) { // the service may have a new token since
        m_cachedControlToken.reset();
        token = co_await controlToken();
        answer = co_await attempt(makeRequest(call, correlationID, token, 2), reader, requestTimeout);
    }
    co_return std::move(answer.outcome);
}

VeranoxAPICall<QByteArray> VeranoxAPIClient::requestConfigData()
{
    const auto data = std::make_shared<QByteArray>();
    const auto keep = [data](QByteArray body) {
        *data = std::move(body);
        return VeranoxAPIResult<>();
    };
    const Call call{.method = "GET", .path = u"/api/config"_s};
    const auto outcome = co_await requestData(call, keep);
    if (!outcome)
        co_return std::unexpected(outcome.error());
    co_return std::move(*data);
}

jobs::Async<VeranoxAPIClient::Answer> VeranoxAPIClient::attempt(
    VeranoxHTTPRequest request, BodyReader reader, jobs::Clock::Duration timeout)
{
    if (jobs::this_job::cancelled())
        co_return Answer{.outcome = std::unexpected(VeranoxAPIFailure::cancelled())};
    auto sending = jobs::fork(exchange(std::move(request), std::move(reader)));
    const jobs::CancelAfter limit(sending, timeout);
    Answer answer = co_await sending;
    const bool isCancelled = !answer.outcome && answer.outcome.error().isCancellation();
    if (isCancelled && limit.expired() && !jobs::this_job::cancelled())
        answer.outcome = std::unexpected(VeranoxAPIFailure::unavailable());
    co_return answer;
}

jobs::Async<VeranoxAPIClient::Answer> VeranoxAPIClient::exchange(VeranoxHTTPRequest request, BodyReader reader)
{
    const jobs::Completion<Answer> answer(m_queue);
    const auto to = answer.resolver();
    const std::stop_callback onCancel(
        to.stopToken(), [to] { to.resolve(Answer{.outcome = std::unexpected(VeranoxAPIFailure::cancelled())}); });
    const auto interpret = [to, reader = std::move(reader)](VeranoxLoopbackTransport::Result result) {
        if (to.stopToken().stop_requested())
            return; // onCancel answers: that the connection broke is what the stop did to it
        if (!result)
            return to.resolve(Answer{.outcome = std::unexpected(failureOf(result.error()))});
        const int status = result->status;
        to.resolve(Answer{.status = status,
            .outcome = isSuccess(status) ? reader(std::move(result->body)) : std::unexpected(refusalIn(*result))});
    };
    m_transport.send(std::move(request), to.stopToken(), interpret);
    co_return co_await answer;
}

jobs::Async<std::optional<QString>> VeranoxAPIClient::controlToken()
{
    if (m_cachedControlToken)
        co_return m_cachedControlToken;
    const auto token = std::make_shared<std::optional<QString>>();
    co_await inTransportThread([token, path = m_controlTokenPath] { *token = readControlToken(path); });
    if (*token)
        m_cachedControlToken = *token;
    co_return std::move(*token);
}

jobs::Async<void> VeranoxAPIClient::inTransportThread(std::function<void()> work)
{
    const jobs::Completion<> done(m_queue, jobs::AnswerFrom::thread);
    m_transport.run([to = done.resolver(), work = std::move(work)] {
        work();
        to.resolve();
    });
    co_await done;
}

VeranoxHTTPRequest VeranoxAPIClient::makeRequest(
    const Call &call, const QString &correlationID, const std::optional<QString> &token, int attempt) const
{
    const QUrl relative(call.path, QUrl::StrictMode);
    if (!relative.isValid())
        qFatal("no URL: %s", qPrintable(call.path));
    const auto target = QUrl::RemoveScheme | QUrl::RemoveAuthority | QUrl::RemoveFragment;
    VeranoxHTTPRequest request{.method = call.method, .target = m_baseURL.resolved(relative).toEncoded(target)};
    if (call.body) {
        request.body = *call.body;
        request.headers.emplace_back("Content-Type", "application/json");
    }
    if (token)
        request.headers.emplace_back("X-Veranox-Token", token->toUtf8());
    request.headers.emplace_back("X-Veranox-Session-ID", m_diagnostics.sessionID.toUtf8());
    request.headers.emplace_back("X-Correlation-ID", correlationID.toUtf8());
    request.headers.emplace_back("X-Veranox-Attempt", QByteArray::number(attempt));
    return request;
}
