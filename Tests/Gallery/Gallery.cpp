#include "Tests/Gallery/Gallery.h"
#include <QImage>
#include <QTest>

using namespace Qt::StringLiterals;

Gallery::Gallery(QString folder) : m_folder(std::move(folder))
{
    m_theme.setReducedMotion(true); // pictures are the same at each run
}

void Gallery::draw(const QString &name, std::unique_ptr<QQuickItem> item, int after)
{
    m_engine.engine();
    QQuickWindow window;
    window.setColor(isDark() ? QColor(0x10, 0x10, 0x12) : QColor(0xE3, 0xE3, 0xE8));
    item->setParentItem(window.contentItem());
    const auto fit = [&] {
        item->setSize({item->implicitWidth(), item->implicitHeight()});
        window.resize(item->size().toSize());
    };
    QObject::connect(item.get(), &QQuickItem::implicitHeightChanged, &window, fit);
    fit();
    window.show();
    window.requestActivate();
    if (!QTest::qWaitForWindowExposed(&window))
        qFatal("%ls never came up.", qUtf16Printable(name));
    QCoreApplication::processEvents(); // positioners lay out with the first frame
    QTest::qWait(after);
    const QImage picture = window.grabWindow();
    const QString file = u"%1/%2-%3-%4x.png"_s.arg(
        m_folder, name, isDark() ? u"dark"_s : u"light"_s, QString::number(window.effectiveDevicePixelRatio()));
    if (!picture.save(file))
        qFatal("%ls cannot be written.", qUtf16Printable(file));
}
