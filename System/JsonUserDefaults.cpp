#include "System/JsonUserDefaults.h"
#include "Base/Files/UserFolders.h"
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QSaveFile>

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 maxFileBytes = 1024 * 1024; // the settings of this application take less than a kilobyte

QString timestamp()
{
    return QDateTime::currentDateTimeUtc().toString(u"yyyyMMdd'T'HHmmss'Z'"_s);
}

} // namespace

JsonUserDefaults::JsonUserDefaults(QString path) : m_path(std::move(path))
{
    load();
}

QString JsonUserDefaults::defaultPath()
{
    return userConfigurationFolder() + u"/veranox/defaults.json"_s;
}

void JsonUserDefaults::load()
{
    QFile file(m_path);
    if (!file.exists())
        return;
    if (!QFileInfo(file).isFile()) // a pipe would keep us waiting for its writer
        return giveUp(u"It is not a regular file"_s);
    if (!file.open(QIODevice::ReadOnly))
        return giveUp(file.errorString());
    const QByteArray bytes = file.read(maxFileBytes + 1);
    if (bytes.size() > maxFileBytes)
        return setAside(u"it is larger than 1 MiB"_s);
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(bytes, &error);
    if (error.error != QJsonParseError::NoError)
        return setAside(u"%1 at byte %2"_s.arg(error.errorString()).arg(error.offset));
    if (!document.isObject())
        return setAside(u"it holds no JSON object"_s);
    m_values = document.object();
}

void JsonUserDefaults::giveUp(const QString &reason)
{
    m_isWritable = false;
    m_problem =
        u"The settings in %1 cannot be read: %2. The defaults apply, and changes are not saved."_s.arg(m_path, reason);
}

void JsonUserDefaults::setAside(const QString &reason)
{
    const QString kept = m_path + u".damaged-"_s + timestamp();
    if (QFile::rename(m_path, kept)) {
        m_problem =
            u"The settings in %1 were damaged (%2) and are kept as %3. The defaults apply."_s.arg(m_path, reason, kept);
        return;
    }
    m_isWritable = false;
    m_problem =
        u"The settings in %1 are damaged (%2) and cannot be moved away. The defaults apply, and changes are not "
        u"saved."_s.arg(m_path, reason);
}

QVariant JsonUserDefaults::value(const QString &key) const
{
    const QJsonValue value = m_values.value(key);
    if (value.isBool())
        return value.toBool();
    if (value.isString())
        return value.toString();
    constexpr qint64 noInteger = std::numeric_limits<qint64>::min();
    if (value.isDouble() && value.toInteger(noInteger) != noInteger)
        return value.toInteger();
    return {};
}

void JsonUserDefaults::setValue(const QString &key, const QVariant &value)
{
    m_values.insert(key, QJsonValue::fromVariant(value));
    if (m_isWritable && save())
        m_problem.clear();
}

bool JsonUserDefaults::save()
{
    QDir().mkpath(QFileInfo(m_path).absolutePath());
    QSaveFile file(m_path);
    if (file.open(QIODevice::WriteOnly)) {
        file.setPermissions(QFileDevice::ReadOwner | QFileDevice::WriteOwner);
        file.write(QJsonDocument(m_values).toJson());
    }
    if (file.commit())
        return true;
    m_problem = u"The settings could not be saved in %1: %2."_s.arg(m_path, file.errorString());
    return false;
}
