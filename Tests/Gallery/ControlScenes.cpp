#include "Tests/Gallery/Gallery.h"
#include "Tests/Gallery/Scenes.h"

using namespace Qt::StringLiterals;

void drawControls(Gallery &gallery)
{
    gallery.draw(u"controls"_s, gallery.engine().create(QUrl::fromLocalFile(QStringLiteral(CONTROL_SHEET)), {}));
}
