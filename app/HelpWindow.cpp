#include "app/HelpWindow.h"

#include "platform/desktop/CloseKeys.h"

#include <QFile>
#include <QImage>
#include <QTextTable>

namespace {
constexpr int textWidth = 680; // of the window as it opens, without its margins
}

HelpWindow::HelpWindow()
{
    setAttribute(Qt::WA_QuitOnClose, false);
    setWindowTitle(tr("Vandrel Guide"));
    setAccessibleName(windowTitle());
    setOpenExternalLinks(true);
    document()->setDocumentMargin(16);
    setSearchPaths({QStringLiteral(":/docs")});
    resize(textWidth + 60, 720);
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
    CloseKeys::addTo(*this, {Qt::Key_Escape});
}

void HelpWindow::showHelp()
{
    show();
    raise();
    activateWindow();
}

// Pictures of windows are wider than the text.
QVariant HelpWindow::loadResource(int type, const QUrl &name)
{
    const QVariant resource = QTextBrowser::loadResource(type, name);
    if (type != QTextDocument::ImageResource)
        return resource;
    QImage image = QImage::fromData(resource.toByteArray());
    const auto width = static_cast<int>(textWidth * devicePixelRatioF());
    if (image.width() > width)
        image = image.scaledToWidth(width, Qt::SmoothTransformation);
    image.setDevicePixelRatio(devicePixelRatioF());
    return image;
}
