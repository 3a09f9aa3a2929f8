#pragma once
#include "Core/Entry/VeranoxMenuAppDelegate.h"
#include <QApplication>

// The application object. A request to end, wherever it comes from (the menu, a signal, the end of the session),
// arrives here as one kind of event and is put to the delegate.
class VeranoxMenuApp final : public QApplication {
    Q_OBJECT

public:
    VeranoxMenuApp(int &argc, char **argv);

    // Runs the application to its end and returns its exit status.
    int run(VeranoxMenuAppDelegate &delegate);

protected:
    bool event(QEvent *event) override;

private:
    VeranoxMenuAppDelegate *m_delegate = nullptr; // while run() runs
};
