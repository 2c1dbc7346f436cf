// SPDX-License-Identifier: Apache-2.0
#include "cli/Pager.h"

#include <QStandardPaths>
#include <csignal>
#include <cstdlib>
#include <sys/wait.h>
#include <unistd.h>

namespace {
// Null: none.
QByteArray command()
{
    for (const char *const name : {"VANDREL_PAGER", "PAGER"}) {
        if (qEnvironmentVariableIsSet(name))
            return qgetenv(name);
    }
    return QStandardPaths::findExecutable(QStringLiteral("less")).isEmpty() ? QByteArray() : "less";
}

[[noreturn]] void runPager(const QByteArray &command, int input)
{
    dup2(input, STDIN_FILENO);
    close(input);
    setenv("LESS", "FRX", 0); // leaves at once what fits on a page; shows colours
    execl("/bin/sh", "sh", "-c", command.constData(), nullptr);
    _exit(EXIT_FAILURE);
}
} // namespace

void Pager::start()
{
    const QByteArray pager = command();
    int ends[2];
    if (pager.isEmpty() || pager == "cat" || pipe(ends) != 0)
        return;
    process_ = fork();
    if (process_ == 0) {
        close(ends[1]);
        runPager(pager, ends[0]);
    }
    close(ends[0]);
    if (process_ > 0) {
        dup2(ends[1], STDOUT_FILENO);
        std::signal(SIGINT, SIG_IGN); // the pager handles it
    }
    close(ends[1]);
}

Pager::~Pager()
{
    if (process_ <= 0)
        return;
    close(STDOUT_FILENO);
    int status = 0;
    while (waitpid(process_, &status, 0) < 0 && errno == EINTR)
        continue;
}
