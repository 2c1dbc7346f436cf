// SPDX-License-Identifier: Apache-2.0
// The main function of the test programs: creates the kind of application that their libraries
// need.
#include <gtest/gtest.h>

#if defined(QT_WIDGETS_LIB)
#include <QApplication>
using Application = QApplication;
#elif defined(QT_GUI_LIB)
#include <QGuiApplication>
using Application = QGuiApplication;
#else
#include <QCoreApplication>
using Application = QCoreApplication;
#endif

int main(int argc, char **argv)
{
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    Application app(argc, argv);
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
