#include "API/Client/VeranoxAPIClient.h"
#include "API/Client/VeranoxAPIClientError.h"
#include "API/Client/VeranoxAPIError.h"
#include "API/Client/VeranoxAPIErrorBody.h"
#include "API/Client/VeranoxBadServerResponse.h"
#include "Base/Failures/VeranoxCancellation.h"
#include "Base/Json/Json.h"
#include "Base/Json/VeranoxDecodingError.h"

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

[[noreturn]] void throwRefusal(const QByteArray &body)
{
    std::optional<QString> reason;
    try {
        reason = decodeRecord<VeranoxAPIErrorBody>(body).error;
    } catch (const VeranoxDecodingError &) {
        throw VeranoxBadServerResponse();
    }
    throw VeranoxAPIError(*reason);
}

std::exception_ptr errorOf(VeranoxTransportFailure failure)
{
    switch (failure) {
    case VeranoxTransportFailure::unreachable:
        break;
    case VeranoxTransportFailure::tooLarge:
        return std::make_exception_ptr(VeranoxBadServerResponse());
    }
    return std::make_exception_ptr(VeranoxAPIClientError(VeranoxAPIClientError::localServiceUnavailable));
}

// What work throws, or nothing. The exception is the caller's alone, who may give it to another thread: a handler that
// answers from inside still holds it afterwards.
std::exception_ptr failureOf(const std::function<void()> &work)
{
    try {
        work();
    } catch (...) {
        return std::current_exception();
    }
    return nullptr;
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
    const auto discardBody = [](const QByteArray &) { };
    try {
        const Answer answer =
            co_await attempt(makeRequest(call, currentCorrelationID(), {}, 1), discardBody, healthTimeout);
        co_return isSuccess(answer.status);
    } catch (const VeranoxError &) { // whatever the reason, the service did not answer well
    }
    co_return false;
}

jobs::Async<void> VeranoxAPIClient::requestData(Call call, BodyReader reader)
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
    if (answer.failure)
        std::rethrow_exception(answer.failure);
}

jobs::Async<QByteArray> VeranoxAPIClient::requestConfigData()
{
    const auto data = std::make_shared<QByteArray>();
    const Call call{.method = "GET", .path = u"/api/config"_s};
    co_await requestData(call, [data](QByteArray body) { *data = std::move(body); });
    co_return std::move(*data);
}

jobs::Async<VeranoxAPIClient::Answer> VeranoxAPIClient::attempt(
    VeranoxHTTPRequest request, BodyReader reader, jobs::Clock::Duration timeout)
{
    if (jobs::this_job::cancelled())
        throw VeranoxCancellation();
    auto sending = jobs::fork(exchange(std::move(request), std::move(reader)));
    const jobs::CancelAfter limit(sending, timeout);
    try {
        co_return co_await sending;
    } catch (const VeranoxCancellation &) { // by the caller or by the limit
    }
    if (limit.expired() && !jobs::this_job::cancelled())
        throw VeranoxAPIClientError(VeranoxAPIClientError::localServiceUnavailable);
    throw VeranoxCancellation();
}

jobs::Async<VeranoxAPIClient::Answer> VeranoxAPIClient::exchange(VeranoxHTTPRequest request, BodyReader reader)
{
    const jobs::Completion<Answer> answer(m_queue);
    const auto to = answer.resolver();
    const std::stop_callback onCancel(
        to.stopToken(), [to] { to.fail(std::make_exception_ptr(VeranoxCancellation())); });
    const auto interpret = [to, reader = std::move(reader)](VeranoxLoopbackTransport::Result result) {
        if (to.stopToken().stop_requested())
            return; // onCancel answers: that the connection broke is what the stop did to it
        if (!result)
            return to.resolve(Answer{.failure = errorOf(result.error())});
        auto failure = failureOf([&] {
            if (!isSuccess(result->status))
                throwRefusal(result->body);
            reader(std::move(result->body));
        });
        to.resolve(Answer{.status = result->status, .failure = std::move(failure)});
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
        if (auto failure = failureOf(work))
            to.fail(std::move(failure));
        else
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
