// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "cli/CommandDescription.h"

#include <QCoreApplication>

// The texts of --help. The manual pages are made from the same descriptions.
class HelpText
{
    Q_DECLARE_TR_FUNCTIONS(HelpText)
public:
    static QString ofProgram();
    static QString ofCommand(const CommandDescription &description);

    static QString summary();
    static QString details();
    static QString usage();
    static QString usage(const CommandDescription &description);
    // "--depth N"
    static QString optionText(const OptionDescription &option);
    // What every command understands, and its own options do not replace.
    static std::vector<OptionDescription> commonOptions(const CommandDescription &description);
    static std::vector<OptionDescription> programOptions();
    struct Exit
    {
        int code;
        QString meaning;
    };
    static std::vector<Exit> exitCodes();
};
