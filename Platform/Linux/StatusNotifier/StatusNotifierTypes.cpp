#include "Platform/Linux/StatusNotifier/StatusNotifierTypes.h"

#include <QDBusMetaType>
#include <QImage>
#include <QtEndian>

namespace {

// The square that StatusNotifier hosts lay out for an icon, in pixels at 100 %, 150 % and 200 %.
constexpr int panelIconSizes[] = {22, 33, 44};

StatusNotifierPixmap toPixmap(const QImage &picture)
{
    const QImage argb = picture.convertToFormat(QImage::Format_ARGB32);
    StatusNotifierPixmap pixmap{argb.width(), argb.height(), {}};
    const qsizetype bytesPerRow = qsizetype{argb.width()} * 4;
    pixmap.pixels.resize(bytesPerRow * argb.height());
    for (int row = 0; row < argb.height(); ++row)
        qToBigEndian<quint32>(argb.constScanLine(row), argb.width(), pixmap.pixels.data() + row * bytesPerRow);
    return pixmap;
}

} // namespace

QDBusArgument &operator<<(QDBusArgument &argument, const StatusNotifierPixmap &pixmap)
{
    argument.beginStructure();
    argument << pixmap.width << pixmap.height << pixmap.pixels;
    argument.endStructure();
    return argument;
}

const QDBusArgument &operator>>(const QDBusArgument &argument, StatusNotifierPixmap &pixmap)
{
    argument.beginStructure();
    argument >> pixmap.width >> pixmap.height >> pixmap.pixels;
    argument.endStructure();
    return argument;
}

QDBusArgument &operator<<(QDBusArgument &argument, const StatusNotifierToolTip &toolTip)
{
    argument.beginStructure();
    argument << toolTip.iconName << toolTip.iconPixmaps << toolTip.title << toolTip.text;
    argument.endStructure();
    return argument;
}

const QDBusArgument &operator>>(const QDBusArgument &argument, StatusNotifierToolTip &toolTip)
{
    argument.beginStructure();
    argument >> toolTip.iconName >> toolTip.iconPixmaps >> toolTip.title >> toolTip.text;
    argument.endStructure();
    return argument;
}

void registerStatusNotifierTypes()
{
    qDBusRegisterMetaType<StatusNotifierPixmap>();
    qDBusRegisterMetaType<QList<StatusNotifierPixmap>>();
    qDBusRegisterMetaType<StatusNotifierToolTip>();
}

QList<StatusNotifierPixmap> statusNotifierPixmaps(const QIcon &icon)
{
    QList<StatusNotifierPixmap> pixmaps;
    if (icon.isNull())
        return pixmaps;
    for (const int size : panelIconSizes)
        pixmaps << toPixmap(icon.pixmap(QSize(size, size), 1.0).toImage());
    return pixmaps;
}
