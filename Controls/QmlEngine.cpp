#include "Controls/QmlEngine.h"
#include "Controls/ControlAccessible.h"
#include "Controls/Desktop.h"
#include "Platform/SystemTheme.h"
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <mutex>

using namespace Qt::StringLiterals;

void qml_register_types_Veranox_Controls(); // made by the build

QmlEngine::QmlEngine(SystemTheme &theme) : m_theme(theme) { }

QmlEngine::~QmlEngine() = default;

QQmlEngine &QmlEngine::engine()
{
    if (m_engine)
        return *m_engine;
    static std::once_flag typesAreRegistered; // for the whole process
    std::call_once(typesAreRegistered, qml_register_types_Veranox_Controls);
    ControlAccessible::install();
    // Small windows that rarely change: drawn by the processor they take a third of the memory that a graphics context
    // does, and no driver can spoil them.
    if (QQuickWindow::sceneGraphBackend() != "software"_L1)
        QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    QQuickWindow::setTextRenderType(QQuickWindow::NativeTextRendering);
    m_engine = std::make_unique<QQmlEngine>();
    m_engine->addImportPath(u"qrc:/"_s); // Qt looks there by itself from 6.5 on
    m_engine->setProperty(Desktop::themeProperty, QVariant::fromValue(&m_theme));
    return *m_engine;
}

std::unique_ptr<QQuickItem> QmlEngine::create(const QUrl &file, const QVariantMap &properties)
{
    QQmlComponent component(&engine(), file);
    if (!component.isReady())
        qFatal("%ls", qUtf16Printable(component.errorString()));
    QObject *made = component.createWithInitialProperties(properties);
    auto *item = qobject_cast<QQuickItem *>(made);
    if (!item)
        qFatal("%ls", qUtf16Printable(component.errorString()));
    QQmlEngine::setObjectOwnership(item, QQmlEngine::CppOwnership);
    return std::unique_ptr<QQuickItem>(item);
}
