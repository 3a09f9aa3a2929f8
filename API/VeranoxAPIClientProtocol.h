#pragma once
#include "Core/Jobs/Job.h"
#include <QList>

struct VeranoxConfig;
struct VeranoxEditableConfig;
struct VeranoxEnvironment;
struct VeranoxProfile;
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

    virtual jobs::Async<bool> healthCheck() = 0; // true when the service answers well within 2 s; never fails
    virtual jobs::Async<QList<VeranoxProfile>> fetchProfiles() = 0;
    virtual jobs::Async<VeranoxConfig> fetchConfig() = 0; // shares one request with fetchEditableConfig()
    virtual jobs::Async<VeranoxEditableConfig> fetchEditableConfig() = 0;
    virtual jobs::Async<VeranoxEnvironment> fetchEnvironment() = 0;
    virtual jobs::Async<QList<VeranoxTunnel>> fetchTunnels() = 0;
    virtual jobs::Async<QList<VeranoxPublication>> fetchPublications() = 0;
    virtual jobs::Async<void> shutdown() = 0; // asks the service to stop; may fail although it stops
};
