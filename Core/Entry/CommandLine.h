#pragma once
#include <QStringList>

// What a person asked for when starting the program.
struct CommandLine {
    enum class Request {
        run,
        version, // print text, end with 0
        help, // print text, end with 0
        status, // ask the running application
        refuse // print text as an error, end with 2
    };
    Request request = Request::run;
    QString text;

    // Reads the arguments, the program's own name first. Any thread; needs no application object.
    static CommandLine parse(const QStringList &arguments);
};
