#include "app/HelpWindow.h"

#include <QFile>
#include <QShortcut>
#include <QTextTable>

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
    for (QTextFrame *frame : document()->rootFrame()->childFrames()) {
        if (auto *const table = qobject_cast<QTextTable *>(frame)) {
            QTextTableFormat format = table->format();
            format.setCellPadding(4);
            format.setBorderCollapse(true);
            table->setFormat(format);
        }
    }
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
