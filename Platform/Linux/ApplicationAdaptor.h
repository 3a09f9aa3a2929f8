#pragma once
#include <QDBusAbstractAdaptor>
#include <QStringList>
#include <QVariantMap>

class BusSingleInstance;

// The interface org.freedesktop.Application of the running application: any call brings it forward.
class ApplicationAdaptor : public QDBusAbstractAdaptor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")

public:
    // Becomes part of the instance, which is the object that is exported.
    explicit ApplicationAdaptor(BusSingleInstance *instance);

public Q_SLOTS:
    void Activate(const QVariantMap &platformData);
    void Open(const QStringList &uris, const QVariantMap &platformData); // there are no documents to open
    void ActivateAction(const QString &action, const QVariantList &parameter, const QVariantMap &platformData);

private:
    BusSingleInstance *m_instance; // the parent
};
