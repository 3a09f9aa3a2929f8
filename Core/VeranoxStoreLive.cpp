// The store of the running application, with everything real.
#include "API/VeranoxAPIClient.h"
#include "Core/VeranoxStore.h"

using namespace Qt::StringLiterals;

std::unique_ptr<VeranoxStore> VeranoxStore::live(jobs::MainQueue &queue)
{
    const VeranoxDiagnosticSession diagnostics = VeranoxDiagnosticSession::make();
    const QUrl service(u"http://127.0.0.1:43200"_s, QUrl::StrictMode);
    return std::make_unique<VeranoxStore>(queue,
        Collaborators{.apiClient = std::make_unique<VeranoxAPIClient>(queue, service, diagnostics),
            .diagnostics = diagnostics,
            .failureNotifier = nullptr});
}
