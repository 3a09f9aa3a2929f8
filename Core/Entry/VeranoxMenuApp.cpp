#include "Core/Entry/VeranoxMenuApp.h"
#include <QEvent>

using namespace Qt::StringLiterals;

VeranoxMenuApp::VeranoxMenuApp(int &argc, char **argv) : QApplication(argc, argv)
{
    setApplicationName(u"veranox-menu"_s);
    setApplicationDisplayName(u"Veranox"_s);
    setApplicationVersion(QStringLiteral(VERANOX_VERSION));
    setDesktopFileName(u"app.veranox.Menu"_s);
    setQuitOnLastWindowClosed(false);
}

int VeranoxMenuApp::run(VeranoxMenuAppDelegate &delegate)
{
    m_delegate = &delegate;
    connect(&delegate, &VeranoxMenuAppDelegate::terminationReplied, this, &QCoreApplication::quit);
    delegate.applicationDidFinishLaunching();
    const int status = exec();
    delegate.applicationWillTerminate();
    m_delegate = nullptr;
    return status;
}

bool VeranoxMenuApp::event(QEvent *event)
{
    if (event->type() == QEvent::Quit && m_delegate
        && m_delegate->applicationShouldTerminate() == VeranoxMenuAppDelegate::TerminateReply::later) {
        event->ignore();
        return true;
    }
    return QApplication::event(event);
}
