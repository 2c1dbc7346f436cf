// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "cli/CommandDescription.h"

#include <QCoreApplication>

// A manual page in the language of man(7).
class ManualPage
{
    Q_DECLARE_TR_FUNCTIONS(ManualPage)
public:
    ManualPage(const QString &program, const QString &summary);

    void addSection(const QString &title);
    void addSubsection(const QString &title);
    void addText(const QString &text);
    void addItem(const QString &term, const QString &text); // the term in bold
    void addCommandLine(const QString &line);
    void addOptions(const std::vector<OptionDescription> &options);
    const QString &source() const { return source_; }

    static QString ofThisProgram(); // vandrel-cli(1)

private:
    static QString escaped(const QString &text);
    void addCommand(const CommandDescription &command);

    QString source_;
};
