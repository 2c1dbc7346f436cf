// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QObject>

class DocumentCommands;
class DocumentController;
class QSessionManager;

// What happens when the desktop's session ends: the user is asked about unsaved documents, and the
// session remembers the files, so that it can open them again.
class SessionEnd : public QObject
{
    Q_OBJECT
public:
    SessionEnd(DocumentController &documents, DocumentCommands &commands);

    // Waits for the answers. False: the user wants to stay.
    bool askAboutUnsaved();
    QStringList restartCommand() const;

private:
    void commit(QSessionManager &manager);
    void save(QSessionManager &manager);

    DocumentController &documents_;
    DocumentCommands &commands_;
};
