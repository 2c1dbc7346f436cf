// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QCoreApplication>
#include <functional>
#include <vector>

class QIODevice;
class QWidget;

// Asks for the name of a file to write, in one of several forms.
class SaveDialog
{
    Q_DECLARE_TR_FUNCTIONS(SaveDialog)
public:
    struct Form
    {
        QString filter; // "Text (*.txt)"
        QString suffix; // "txt", added to a name without one
    };

    // Returns at once; the file is chosen later, if at all.
    static void open(QWidget &parent, const QString &title, const QString &name,
                     std::vector<Form> forms, std::function<void(const QString &file)> chosen);
    // Replaces the file as a whole, or says in the window why it could not.
    static void write(QWidget &parent, const QString &file,
                      const std::function<bool(QIODevice &)> &write);
};
