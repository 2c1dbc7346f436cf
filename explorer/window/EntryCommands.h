// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QObject>

class EntrySelection;
class QMainWindow;
class QPoint;

// What the user does with the selected entry: copy it, reveal its driver bundle, open its menu.
class EntryCommands : public QObject
{
    Q_OBJECT
public:
    EntryCommands(QMainWindow &window, EntrySelection &selection); // which must outlive this

    // Its items are those of the window's menus.
    void showEntryMenu(const QPoint &globalPosition);

    void copy(); // the selected text of a field or cell, or else the entry's path
    void copyName();
    void copyPath();
    void copyClass();
    void copyBundle();
    void copyKernelPath();
    void paste(); // into the field with the keyboard, or else goes to the path
    static bool canPaste();
    void revealSelectionBundleInNavro();
    bool hasBundle() const;
    bool hasKernelPath() const;
    bool hasBundlePath() const;

private:
    QMainWindow &window_;
    EntrySelection &selection_;
};
