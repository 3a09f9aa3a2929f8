#include "Core/Entry/CommandLine.h"
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using Request = CommandLine::Request;

TEST(CommandLine, isReadByATable)
{
    struct Row {
        QStringList given;
        Request request;
        QString textHolds;
    };
    const QList<Row> rows{
        {{}, Request::run, {}},
        {{u"--version"_s}, Request::version, u"veranox-menu "_s},
        {{u"--help"_s}, Request::help, u"Usage: veranox-menu"_s},
        {{u"-h"_s}, Request::help, u"--status"_s},
        {{u"--status"_s}, Request::status, {}},
        {{u"--bogus"_s}, Request::refuse, u"unknown option \"--bogus\""_s},
        {{u"file"_s}, Request::refuse, u"--help"_s},
        {{u""_s}, Request::refuse, u"unknown option \"\""_s},
        {{u"--status\n"_s}, Request::refuse, u"unknown option \"--status\uFFFD\""_s},
        {{u"--status"_s, u"a\u001B[2J"_s}, Request::refuse, u"\"a\uFFFD[2J\""_s},
        {{u"--status"_s, u"now"_s}, Request::refuse, u"\"now\" is one argument too many"_s},
    };
    for (const Row &row : rows) {
        const CommandLine read = CommandLine::parse(QStringList(u"/usr/bin/veranox-menu"_s) + row.given);
        EXPECT_EQ(read.request, row.request) << qPrintable(row.given.join(u' '));
        EXPECT_TRUE(read.text.contains(row.textHolds)) << qPrintable(read.text);
        if (row.request == Request::refuse)
            EXPECT_FALSE(read.text.contains(u'\n')) << "one line";
    }
}
