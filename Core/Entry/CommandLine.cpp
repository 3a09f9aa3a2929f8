#include "Core/Entry/CommandLine.h"

using namespace Qt::StringLiterals;

namespace {

QString helpText()
{
    return uR"(Usage: veranox-menu [option]

Veranox in the menu bar or tray: shows and controls the local router service.

Options:
  --status    print what the running application knows, a line each for the
              service and every profile, tunnel and publication
  --version   print the version
  --help      print this text

Without an option it starts; a second start brings the first one forward.
)"_s;
}

// An argument as it can stand in one line of a terminal.
QString shown(QString argument)
{
    for (QChar &character : argument) {
        if (character.category() == QChar::Other_Control)
            character = u'\uFFFD';
    }
    return argument;
}

} // namespace

CommandLine CommandLine::parse(const QStringList &arguments)
{
    const QStringList given = arguments.mid(1);
    if (given.isEmpty())
        return {};
    const QString &first = given.first();
    if (given.size() > 1)
        return {Request::refuse,
            u"veranox-menu: \"%1\" is one argument too many. Run veranox-menu --help to see the options."_s.arg(
                shown(given.at(1)))};
    if (first == "--version"_L1)
        return {Request::version, u"veranox-menu " VERANOX_VERSION "\n"_s};
    if (first == "--help"_L1 || first == "-h"_L1)
        return {Request::help, helpText()};
    if (first == "--status"_L1)
        return {Request::status, {}};
    return {Request::refuse,
        u"veranox-menu: unknown option \"%1\". Run veranox-menu --help to see the options."_s.arg(shown(first))};
}
