#include "Platform/Linux/ApplicationAdaptor.h"

#include "Platform/Linux/BusSingleInstance.h"

using namespace Qt::StringLiterals;

ApplicationAdaptor::ApplicationAdaptor(BusSingleInstance *instance)
    : QDBusAbstractAdaptor(instance),
      m_instance(instance)
{
}

void ApplicationAdaptor::Activate(const QVariantMap &platformData)
{
    Q_EMIT m_instance->activationRequested(platformData.value(u"activation-token"_s).toString());
}

void ApplicationAdaptor::Open(const QStringList &, const QVariantMap &platformData)
{
    Activate(platformData);
}

void ApplicationAdaptor::ActivateAction(const QString &, const QVariantList &, const QVariantMap &platformData)
{
    Activate(platformData);
}
