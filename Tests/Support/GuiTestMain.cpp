#include <QApplication>
#include <gtest/gtest.h>

// Widgets are drawn off screen, except in a virtual desktop that has a display.
int main(int argc, char **argv)
{
    ::testing::InitGoogleTest(&argc, argv);
    if (::testing::GTEST_FLAG(list_tests)) // at build time: nothing of the desktop is needed, nor its threads
        return RUN_ALL_TESTS();
    if (qEnvironmentVariableIsEmpty("VIRTUAL_DESKTOP_DIR") || qEnvironmentVariableIsEmpty("DISPLAY"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    const int result = RUN_ALL_TESTS();
    const bool filterFitsNothing = ::testing::UnitTest::GetInstance()->test_to_run_count() == 0;
    return filterFitsNothing ? 1 : result;
}
