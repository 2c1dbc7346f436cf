// SPDX-License-Identifier: Apache-2.0
#include "app/SessionEnd.h"

#include "platform/desktop/DocumentCommands.h"
#include "platform/documents/DocumentController.h"

#include <QEventLoop>
#include <QGuiApplication>
#include <QPointer>
#include <QSessionManager>

SessionEnd::SessionEnd(DocumentController &documents, DocumentCommands &commands)
    : documents_(documents)
    , commands_(commands)
{
    connect(qApp, &QGuiApplication::commitDataRequest, this, &SessionEnd::commit,
            Qt::DirectConnection);
    connect(qApp, &QGuiApplication::saveStateRequest, this, &SessionEnd::save,
            Qt::DirectConnection);
}

void SessionEnd::commit(QSessionManager &manager)
{
    if (!manager.allowsInteraction())
        return; // the session ends without questions
    const bool mayEnd = askAboutUnsaved();
    manager.release();
    if (!mayEnd)
        manager.cancel();
}

bool SessionEnd::askAboutUnsaved()
{
    std::vector<QPointer<Document>> edited;
    for (const auto &document : documents_.documents()) {
        if (document->isDocumentEdited())
            edited.emplace_back(document.get());
    }
    for (const auto &document : edited) {
        if (!document)
            continue;
        std::optional<bool> mayEnd;
        QEventLoop answer;
        connect(document, &QObject::destroyed, &answer, &QEventLoop::quit);
        commands_.prepareToClose(*document, [&](bool mayClose) {
            mayEnd = mayClose;
            answer.quit();
        });
        if (!mayEnd)
            answer.exec();
        if (!mayEnd.value_or(true))
            return false;
    }
    return true;
}

void SessionEnd::save(QSessionManager &manager)
{
    manager.setRestartHint(QSessionManager::RestartIfRunning);
    manager.setRestartCommand(restartCommand());
}

QStringList SessionEnd::restartCommand() const
{
    QStringList command{QCoreApplication::applicationFilePath()};
    for (const auto &document : documents_.documents()) {
        if (document->hasFile())
            command.append(document->fileName());
    }
    return command;
}
