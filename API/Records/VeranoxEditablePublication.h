#pragma once
#include <QString>
#include <optional>

// A publication as it is saved, without its name.
struct VeranoxEditablePublication {
    QString displayName;
    QString profile;
    QString target; // loopback host:port
    QString reach; // "tailnet" or "funnel"
    qint64 port = 0; // on the tailnet
    bool tls = false; // the service ends TLS on that port
    bool disabled = false;

    bool operator==(const VeranoxEditablePublication &) const = default;
};

// The request to save a publication; one that names another original name renames it.
struct VeranoxPublicationSaveRequest {
    QString name;
    std::optional<QString> originalName;
    VeranoxEditablePublication publication;

    bool operator==(const VeranoxPublicationSaveRequest &) const = default;
};
