#pragma once
#include "API/Client/VeranoxAPIFailure.h"
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
// Each but healthCheck() gives its answer or the failure, and throws nothing.
class VeranoxAPIClientProtocol {
public:
    VeranoxAPIClientProtocol() = default;
    VeranoxAPIClientProtocol(const VeranoxAPIClientProtocol &) = delete;
    VeranoxAPIClientProtocol &operator=(const VeranoxAPIClientProtocol &) = delete;
    virtual ~VeranoxAPIClientProtocol() = default;

    // Writes to tunnels and publications answer with the complete new list.

    virtual jobs::Async<bool> healthCheck() = 0; // true when the service answers well within 2 s; never fails
    virtual VeranoxAPICall<QList<VeranoxProfile>> fetchProfiles() = 0;
    virtual VeranoxAPICall<VeranoxConfig> fetchConfig() = 0; // shares one request with fetchEditableConfig()
    virtual VeranoxAPICall<VeranoxEditableConfig> fetchEditableConfig() = 0;
    // The whole document, as the user's current truth.
    virtual VeranoxAPICall<> saveConfig(VeranoxEditableConfig config) = 0;
    virtual VeranoxAPICall<VeranoxProfileAction> login(QString profileName) = 0;
    virtual VeranoxAPICall<VeranoxProfileAction> logout(QString profileName) = 0;
    virtual VeranoxAPICall<> shutdown() = 0; // asks the service to stop; may fail although it stops
    // An "&" in the target splits the query, and the service sees what stands before it.
    virtual VeranoxAPICall<VeranoxPathReport> diagnose(QString target) = 0;
    virtual VeranoxAPICall<QList<VeranoxTunnel>> fetchTunnels() = 0;
    virtual VeranoxAPICall<QList<VeranoxTunnel>> saveTunnel(
        QString name, std::optional<QString> originalName, VeranoxEditableTunnel tunnel) = 0;
    virtual VeranoxAPICall<QList<VeranoxTunnel>> deleteTunnel(QString name) = 0;
    virtual VeranoxAPICall<QList<VeranoxTunnel>> startTunnel(QString name) = 0;
    virtual VeranoxAPICall<QList<VeranoxTunnel>> stopTunnel(QString name) = 0;
    virtual VeranoxAPICall<QList<VeranoxTunnel>> restartTunnel(QString name) = 0;
    virtual VeranoxAPICall<> setTunnelSecret(QString name, QString password) = 0;
    virtual VeranoxAPICall<QList<VeranoxPublication>> fetchPublications() = 0;
    virtual VeranoxAPICall<QList<VeranoxPublication>> savePublication(
        QString name, std::optional<QString> originalName, VeranoxEditablePublication publication) = 0;
    virtual VeranoxAPICall<QList<VeranoxPublication>> deletePublication(QString name) = 0;
    virtual VeranoxAPICall<QList<VeranoxPublication>> startPublication(QString name) = 0;
    virtual VeranoxAPICall<QList<VeranoxPublication>> stopPublication(QString name) = 0;
    virtual VeranoxAPICall<QList<VeranoxPublication>> restartPublication(QString name) = 0;
    virtual VeranoxAPICall<VeranoxEnvironment> fetchEnvironment() = 0;
    virtual VeranoxAPICall<VeranoxFeedbackResult> submitFeedback(QString message, QString kind, QString contact) = 0;
};
