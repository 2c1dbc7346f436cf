// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "app/FileComparison.h"

#include <QPointer>

class DocumentCommands;
class QMenu;
class TavDocumentController;

// The menu that compares a window's document with a file, with another open document, or with what
// it was before.
class CompareMenu : public QObject
{
    Q_OBJECT
public:
    // The menu owns this; the others must outlive it.
    CompareMenu(QMenu &menu, TavDocument &document, TavDocumentController &documents,
                const DocumentCommands &commands);

    void compareWithFile(const QString &file);

private:
    using Side = ComparisonDocument::Side;

    void rebuild();
    void add(const QString &title, std::function<Side()> other);
    void askForFile();
    void compare(Side other);
    Side shown() const;

    QMenu &menu_;
    QPointer<TavDocument> document_;
    TavDocumentController &documents_;
    const DocumentCommands &commands_;
};
