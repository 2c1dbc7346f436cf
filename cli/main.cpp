// SPDX-License-Identifier: Apache-2.0
#include "cli/Program.h"

#include <QCoreApplication>

int main(int argc, char **argv)
{
    // Qt must not interpret the options.
    int count = 1;
    const QCoreApplication application(count, argv);
    QStringList arguments;
    for (int i = 1; i < argc; ++i)
        arguments.append(QString::fromLocal8Bit(argv[i]));
    return static_cast<int>(Program::run(arguments));
}
