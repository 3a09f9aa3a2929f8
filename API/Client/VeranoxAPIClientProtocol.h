#pragma once
#include "Base/Jobs/Job.h"
#include <QList>
#include <QString>
#include <optional>

struct VeranoxConfig;
struct VeranoxEditableConfig;
struct VeranoxEditablePublication;
struct VeranoxEditableTunnel;
struct VeranoxEnvironment;
struct VeranoxFeedbackResult;
struct VeranoxPathReport;
struct VeranoxProfile;
struct VeranoxProfileAction;
struct VeranoxPublication;
struct VeranoxTunnel;

// The operations through which the application reaches the local service. Main thread only, from within a job.
//
// Every operation but healthCheck() fails with one of
//   VeranoxAPIClientError     the service cannot be reached, or did not answer in time
//   VeranoxAPIError           the service refused, and says why
//   VeranoxBadServerResponse  the answer is not one that the service gives
//   VeranoxDecodingError      a successful answer whose body is not the record it should be
//   VeranoxCancellation       the calling job was cancelled meanwhile; never shown
class VeranoxAPIClientProtocol {
public:
    VeranoxAPIClientProtocol() = default;
    VeranoxAPIClientProtocol(const VeranoxAPIClientProtocol &) = delete;
    VeranoxAPIClientProtocol &operator=(const VeranoxAPIClientProtocol &) = delete;
    virtual ~VeranoxAPIClientProtocol() = default;

    // Writes to tunnels and publications answer with the complete new list.

    virtual jobs::Async<bool> healthCheck() = 0; // true when the service answers well within 2 s; never fails
    virtual jobs::Async<QList<VeranoxProfile>> fetchProfiles() = 0;
    virtual jobs::Async<VeranoxConfig> fetchConfig() = 0; // shares one request with fetchEditableConfig()
    virtual jobs::Async<VeranoxEditableConfig> fetchEditableConfig() = 0;
    // The whole document, as the user's current truth.
    virtual jobs::Async<void> saveConfig(VeranoxEditableConfig config) = 0;
    virtual jobs::Async<VeranoxProfileAction> login(QString profileName) = 0;
    virtual jobs::Async<VeranoxProfileAction> logout(QString profileName) = 0;
    virtual jobs::Async<void> shutdown() = 0; // asks the service to stop; may fail although it stops
    // An "&" in the target splits the query, and the service sees what stands before it.
    virtual jobs::Async<VeranoxPathReport> diagnose(QString target) = 0;
    virtual jobs::Async<QList<VeranoxTunnel>> fetchTunnels() = 0;
    virtual jobs::Async<QList<VeranoxTunnel>> saveTunnel(
        QString name, std::optional<QString> originalName, VeranoxEditableTunnel tunnel) = 0;
    virtual jobs::Async<QList<VeranoxTunnel>> deleteTunnel(QString name) = 0;
    virtual jobs::Async<QList<VeranoxTunnel>> startTunnel(QString name) = 0;
    virtual jobs::Async<QList<VeranoxTunnel>> stopTunnel(QString name) = 0;
    virtual jobs::Async<QList<VeranoxTunnel>> restartTunnel(QString name) = 0;
    virtual jobs::Async<void> setTunnelSecret(QString name, QString password) = 0;
    virtual jobs::Async<QList<VeranoxPublication>> fetchPublications() = 0;
    virtual jobs::Async<QList<VeranoxPublication>> savePublication(
        QString name, std::optional<QString> originalName, VeranoxEditablePublication publication) = 0;
    virtual jobs::Async<QList<VeranoxPublication>> deletePublication(QString name) = 0;
    virtual jobs::Async<QList<VeranoxPublication>> startPublication(QString name) = 0;
    virtual jobs::Async<QList<VeranoxPublication>> stopPublication(QString name) = 0;
    virtual jobs::Async<QList<VeranoxPublication>> restartPublication(QString name) = 0;
    virtual jobs::Async<VeranoxEnvironment> fetchEnvironment() = 0;
    virtual jobs::Async<VeranoxFeedbackResult> submitFeedback(QString message, QString kind, QString contact) = 0;
};
