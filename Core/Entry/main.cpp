#include "Base/Jobs/SystemClock.h"
#include "Core/Entry/CommandLine.h"
#include "Core/Entry/VeranoxMenuApp.h"
#include "Core/VeranoxStatusReport.h"
#include "Core/VeranoxStore.h"
#include "Log/VeranoxLogEcho.h"
#include "Platform/Platform.h"
#include "Platform/ScreenReader.h"
#include "Platform/StatusService.h"
#include <QTextStream>

namespace {

int printStatus(int &argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    const auto lines = platform::askForStatus();
    if (!lines) {
        QTextStream(stderr) << "veranox-menu: no running application answers. Start veranox-menu first.\n";
        return 1;
    }
    QTextStream out(stdout);
    for (const QString &line : *lines)
        out << line << '\n';
    return 0;
}

int runApplication(int &argc, char **argv)
{
    platform::offerToScreenReaders();
    VeranoxMenuApp application(argc, argv);
    const auto instance = platform::makeSingleInstance();
    switch (instance->acquire()) {
    case SingleInstance::Outcome::handedOver:
        return 0;
    case SingleInstance::Outcome::notAnswered:
        QTextStream(stderr)
            << "veranox-menu: Veranox runs already, but does not answer. End it, then start it again.\n";
        return 1;
    case SingleInstance::Outcome::unguarded:
        QTextStream(stderr) << "veranox-menu: there is no session bus, so a second start would not be noticed.\n";
        break;
    case SingleInstance::Outcome::first:
        break;
    }
    jobs::SystemClock clock;
    jobs::MainQueue queue(clock);
    VeranoxMenuAppDelegate delegate(queue, VeranoxMenuAppParts::live(queue));
    QObject::connect(instance.get(), &SingleInstance::activationRequested, &delegate,
        &VeranoxMenuAppDelegate::applicationShouldHandleReopen);
    const auto termination = platform::makeTermination();
    QObject::connect(termination.get(), &Termination::terminationRequested, &application, &QCoreApplication::quit);
    const VeranoxLogEcho logEcho(delegate.store().activityLog(), stderr);
    const VeranoxStore &store = delegate.store();
    const auto statusService = platform::makeStatusService([&store] { return describeStatus(store); });
    return application.run(delegate);
}

} // namespace

int main(int argc, char **argv)
{
    const QStringList arguments = [&] {
        QStringList list;
        for (int index = 0; index < argc; ++index)
            list.append(QString::fromLocal8Bit(argv[index]));
        return list;
    }();
    const CommandLine commandLine = CommandLine::parse(arguments);
    switch (commandLine.request) {
    case CommandLine::Request::version:
    case CommandLine::Request::help:
        QTextStream(stdout) << commandLine.text;
        return 0;
    case CommandLine::Request::refuse:
        QTextStream(stderr) << commandLine.text << '\n';
        return 2;
    case CommandLine::Request::status:
        return printStatus(argc, argv);
    case CommandLine::Request::run:
        return runApplication(argc, argv);
    }
    Q_UNREACHABLE();
}
