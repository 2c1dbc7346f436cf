// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "cli/CommandDescription.h"

#include <QCommandLineParser>

// The arguments and options of a command.
class CommandInput
{
    Q_DECLARE_TR_FUNCTIONS(CommandInput)
public:
    // Arguments: those after the command's name. Throws CommandError for a wrong command line,
    // unless it asks for help.
    CommandInput(const CommandDescription &description, const QStringList &arguments);

    // Those that every command has.
    static const std::vector<OptionDescription> &commonOptions();

    bool isSet(const char *option) const { return parser_.isSet(QString::fromLatin1(option)); }
    QString value(const char *option) const { return parser_.value(QString::fromLatin1(option)); }
    QStringList values(const char *option) const // of an option that may be repeated
    {
        return parser_.values(QString::fromLatin1(option));
    }
    // The words of a value with commas; all of them if the option is not set.
    QStringList choices(const OptionDescription &option) const;
    // Throw CommandError unless it is a number of 0 or more; none if it is not set.
    std::optional<double> number(const char *option, double most) const;
    std::optional<quint32> wholeNumber(const char *option) const;
    QStringList arguments() const { return parser_.positionalArguments(); }

private:
    void add(const OptionDescription &option);
    void check(const CommandDescription &description) const;

    QCommandLineParser parser_;
};
