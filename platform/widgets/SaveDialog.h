// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>
#include <functional>
#include <vector>

class QWidget;

// Asks for the name of a file to write, in one of several forms.
namespace SaveDialog {
struct Form
{
    QString filter; // "Text (*.txt)"
    QString suffix; // "txt", added to a name without one
};

// Returns at once; the file is chosen later, if at all.
void open(QWidget &parent, const QString &title, const QString &name, std::vector<Form> forms,
          std::function<void(const QString &file)> chosen);
} // namespace SaveDialog
