#include "app/HelpWindow.h"

#include <QFile>
#include <QShortcut>

HelpWindow::HelpWindow()
{
    setAttribute(Qt::WA_QuitOnClose, false);
    setWindowTitle(tr("Vandrel Guide"));
    setAccessibleName(windowTitle());
    setOpenExternalLinks(true);
    document()->setDocumentMargin(16);
    resize(720, 640);
    QFile guide(QStringLiteral(":/docs/guide.md"));
    if (guide.open(QIODevice::ReadOnly))
        setMarkdown(QString::fromUtf8(guide.readAll()));
    for (const QKeySequence &key :
         {QKeySequence(QKeySequence::Close), QKeySequence(Qt::Key_Escape)})
        connect(new QShortcut(key, this), &QShortcut::activated, this, &QWidget::close);
}

void HelpWindow::showHelp()
{
    show();
    raise();
    activateWindow();
}
