// SPDX-License-Identifier: Apache-2.0
#include "cli/Program.h"

#include <QCoreApplication>
#include <csignal>
#include <cstdio>
#include <cstdlib>

int main(int argc, char **argv)
{
    std::signal(SIGPIPE, SIG_DFL); // some parents ignore it: a closed pipe would be an error
    // Qt must not interpret the options.
    int count = 1;
    const QCoreApplication application(count, argv);
    QStringList arguments;
    for (int i = 1; i < argc; ++i)
        arguments.append(QString::fromLocal8Bit(argv[i]));
    const ExitCode code = Program::run(arguments);
    std::fflush(nullptr);
    // Taking down what is left would take as long as many a command.
    std::_Exit(static_cast<int>(code));
}
