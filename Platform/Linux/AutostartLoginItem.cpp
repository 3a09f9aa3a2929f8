#include "Platform/Linux/AutostartLoginItem.h"
#include "Base/Files/UserFolders.h"
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 maxEntryBytes = 64 * 1024; // a desktop entry takes less than one kilobyte

// The quoting of the desktop entry format: reserved characters behind a backslash, and the whole escaped once more as
// every value is; a percent sign would begin a field code.
QString quoted(const QString &program)
{
    QString text;
    for (const QChar c : program) {
        if (u"\"`$\\"_s.contains(c))
            text += u"\\\\"_s;
        text += c == u'%' ? u"%%"_s : c == u'\\' ? u"\\\\"_s : QString(c);
    }
    return u'"' + text + u'"';
}

} // namespace

AutostartLoginItem::AutostartLoginItem(QString entryPath, QString program)
    : m_entryPath(std::move(entryPath)),
      m_program(std::move(program))
{
}

QString AutostartLoginItem::defaultEntryPath()
{
    return userConfigurationFolder() + u"/autostart/veranox.desktop"_s;
}

bool AutostartLoginItem::isEnabled() const
{
    QFile entry(m_entryPath);
    if (!QFileInfo(entry).isFile() || !entry.open(QIODevice::ReadOnly | QIODevice::Text)) // no waiting at a pipe
        return false;
    const QStringList lines = QString::fromUtf8(entry.read(maxEntryBytes)).split(u'\n');
    return !lines.contains(u"Hidden=true"_s) && !lines.contains(u"X-GNOME-Autostart-enabled=false"_s);
}

std::expected<void, QString> AutostartLoginItem::add()
{
    QDir().mkpath(QFileInfo(m_entryPath).absolutePath());
    QSaveFile entry(m_entryPath);
    if (entry.open(QIODevice::WriteOnly)) {
        const QString text = u"[Desktop Entry]\nType=Application\nName=Veranox\n"
                             "Comment=Shows and controls the local router service\n"
                             "Exec=%1\nIcon=app.veranox.Menu\nTerminal=false\nX-GNOME-Autostart-enabled=true\n"_s;
        entry.write(text.arg(quoted(m_program)).toUtf8());
    }
    if (entry.commit())
        return {};
    return std::unexpected(
        u"Launch at login could not be switched on: %1 (%2)."_s.arg(entry.errorString(), m_entryPath));
}

std::expected<void, QString> AutostartLoginItem::remove()
{
    QFile entry(m_entryPath);
    if (!entry.exists() || entry.remove())
        return {};
    return std::unexpected(
        u"Launch at login could not be switched off: %1 (%2)."_s.arg(entry.errorString(), m_entryPath));
}
