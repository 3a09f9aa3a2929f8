// The store of the running application, with everything real.
#include "API/Client/VeranoxAPIClient.h"
#include "Core/VeranoxCLIResolver.h"
#include "Core/VeranoxFeedbackIdentity.h"
#include "Core/VeranoxRuntimeClient.h"
#include "Core/VeranoxStore.h"
#include "Log/VeranoxRuntimeLogFile.h"

using namespace Qt::StringLiterals;

std::unique_ptr<VeranoxStore> VeranoxStore::live(jobs::MainQueue &queue, const QString &resourceDirectory,
    const QVariantMap &infoDictionary, std::unique_ptr<VeranoxTunnelSecretStoring> tunnelSecrets)
{
    const VeranoxDiagnosticSession diagnostics = VeranoxDiagnosticSession::make();
    const QUrl service(u"http://127.0.0.1:43200"_s, QUrl::StrictMode);
    const VeranoxSessionIdentity session = VeranoxSessionIdentity::of(infoDictionary);
    return std::make_unique<VeranoxStore>(queue,
        Collaborators{.apiClient = std::make_unique<VeranoxAPIClient>(
                          queue, service, diagnostics, veranoxFeedbackIdentity(session)),
            .runtimeClient = std::make_unique<VeranoxRuntimeClient>(queue, u"127.0.0.1:43200"_s, diagnostics),
            .cliCommand = VeranoxCLIResolver::resolve(resourceDirectory),
            .diagnostics = diagnostics,
            .failureNotifier = nullptr,
            .runtimeLogPersistence =
                std::make_unique<VeranoxRuntimeLogFile>(queue, VeranoxRuntimeLogFile::defaultFileURL(),
                    VeranoxRuntimeLogFile::defaultMaxBytes, VeranoxRuntimeLogFile::defaultBackupCount),
            .sessionIdentity = session,
            .tunnelSecrets = std::move(tunnelSecrets)});
}
