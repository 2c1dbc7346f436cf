// SPDX-License-Identifier: Apache-2.0
#include "app/GuideView.h"

#include <QAbstractTextDocumentLayout>
#include <QFile>
#include <QImage>
#include <QScrollBar>
#include <QTextBlock>
#include <QTextTable>

namespace {
constexpr int textWidth = 680; // pixels, of the window at first, without its margins

void padTables(QTextDocument &document)
{
    for (QTextFrame *frame : document.rootFrame()->childFrames()) {
        auto *const table = qobject_cast<QTextTable *>(frame);
        if (!table)
            continue;
        QTextTableFormat format = table->format();
        format.setCellPadding(4);
        format.setBorderCollapse(true);
        table->setFormat(format);
    }
}
} // namespace

GuideView::GuideView(QWidget *parent)
    : QTextBrowser(parent)
{
    setOpenExternalLinks(true);
    document()->setDocumentMargin(16);
    setSearchPaths({QStringLiteral(":/docs")});
    QFile guide(QStringLiteral(":/docs/guide.md"));
    if (guide.open(QIODevice::ReadOnly))
        setMarkdown(QString::fromUtf8(guide.readAll()));
    padTables(*document());
}

std::vector<GuideView::Section> GuideView::sections() const
{
    std::vector<Section> sections;
    for (QTextBlock block = document()->begin(); block.isValid(); block = block.next()) {
        if (block.blockFormat().headingLevel() > 1)
            sections.push_back({block.text(), block});
    }
    return sections;
}

void GuideView::goToSection(const Section &section)
{
    setTextCursor(QTextCursor(section.heading));
    const QRectF place = document()->documentLayout()->blockBoundingRect(section.heading);
    verticalScrollBar()->setValue(qRound(place.top()));
}

QList<QTextCursor> GuideView::matches(const QString &text) const
{
    QList<QTextCursor> matches;
    if (text.isEmpty())
        return matches;
    for (QTextCursor match = document()->find(text); !match.isNull();
         match = document()->find(text, match))
        matches.append(match);
    return matches;
}

void GuideView::showMatch(const QTextCursor &match)
{
    setTextCursor(match);
    const int height = viewport()->height();
    const int place = cursorRect().center().y();
    if (place < height / 8 || place > height - height / 8)
        verticalScrollBar()->setValue(verticalScrollBar()->value() + place - height / 3);
}

// Scales pictures down, because those of windows are wider than the text.
QVariant GuideView::loadResource(int type, const QUrl &name)
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
