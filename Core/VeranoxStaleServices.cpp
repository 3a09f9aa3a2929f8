#include "Core/VeranoxStaleServices.h"
#include <csignal>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

// pgrep searches for an extended regular expression. As one, a path such as /opt/c++/veranox would not find itself.
// A dot finds itself, and other characters besides: matches() sorts those out.
QString searchPattern(const QString &text)
{
    QString pattern;
    for (const QChar character : text) {
        if (u"\\^$*+?()[{|"_s.contains(character))
            pattern += u'\\';
        pattern += character;
    }
    return pattern;
}

QList<qint32> identifiersIn(const QString &output)
{
    QList<qint32> identifiers;
    for (const QString &line : output.split(u'\n', Qt::SkipEmptyParts)) {
        bool isNumber = false;
        const qint32 identifier = line.toInt(&isNumber);
        if (isNumber)
            identifiers.append(identifier);
    }
    return identifiers;
}

} // namespace

jobs::Async<QList<qint32>> VeranoxStaleServices::matchingProcessIdentifiers(QString exactCommandLine)
{
    const QString found = co_await m_tools.run(
        u"/usr/bin/pgrep"_s, {u"-U"_s, QString::number(::getuid()), u"-f"_s, searchPattern(exactCommandLine)});
    QList<qint32> matching;
    for (const qint32 identifier : identifiersIn(found)) {
        if (co_await matches(identifier, exactCommandLine))
            matching.append(identifier);
    }
    co_return matching;
}

jobs::Async<> VeranoxStaleServices::signalIfStillMatching(
    QList<qint32> identifiers, QString expectedCommandLine, int signal)
{
    for (const qint32 identifier : identifiers) {
        if (co_await matches(identifier, expectedCommandLine))
            ::kill(identifier, signal);
    }
}

jobs::Async<bool> VeranoxStaleServices::matches(qint32 identifier, QString commandLine)
{
    const QString running =
        co_await m_tools.run(u"/bin/ps"_s, {u"-o"_s, u"command="_s, u"-p"_s, QString::number(identifier)});
    co_return running.trimmed() == commandLine;
}
