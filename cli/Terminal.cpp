// SPDX-License-Identifier: Apache-2.0
#include "cli/Terminal.h"

#include <clocale>
#include <cstdlib>
#include <cstring>
#include <langinfo.h>
#include <sys/ioctl.h>
#include <unistd.h>

namespace {
int columnsOfTerminal()
{
    constexpr int usual = 80;
    constexpr int least = 20;
    if (const int columns = qEnvironmentVariableIntValue("COLUMNS"); columns >= least)
        return columns;
    struct winsize size = {};
    if (ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col >= least)
        return size.ws_col;
    return usual;
}
} // namespace

Terminal Terminal::ofStandardOutput(const QString &colors)
{
    Terminal terminal;
    std::setlocale(LC_CTYPE, "");
    terminal.isUtf8 = std::strcmp(nl_langinfo(CODESET), "UTF-8") == 0;
    terminal.isTerminal = isatty(STDOUT_FILENO) == 1;
    if (terminal.isTerminal)
        terminal.columns = columnsOfTerminal();
    const bool isPlain = !qEnvironmentVariableIsEmpty("NO_COLOR") ||
                         qEnvironmentVariable("TERM") == QLatin1String("dumb");
    terminal.hasColors = colors == QLatin1String("always") ||
                         (colors != QLatin1String("never") && terminal.isTerminal && !isPlain);
    return terminal;
}
