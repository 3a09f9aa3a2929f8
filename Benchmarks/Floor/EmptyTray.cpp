#include "Benchmarks/Floor/EmptyTray.h"
#include <QPixmap>

namespace {

QIcon square()
{
    QPixmap pixmap(22, 22);
    pixmap.fill(Qt::darkGreen);
    return pixmap;
}

} // namespace

EmptyTray::EmptyTray(const QUrl &moduleFile) : m_icon(square())
{
    m_engine.load(moduleFile);
    if (m_engine.rootObjects().isEmpty())
        qFatal("%ls cannot be loaded.", qUtf16Printable(moduleFile.toString()));
    m_icon.setToolTip(QStringLiteral("Floor"));
    m_icon.show();
}
