// SPDX-License-Identifier: Apache-2.0
#include "platform/desktop/PagePrinter.h"

#include <QFontDatabase>
#include <QPrinter>

namespace {
constexpr int pointSize = 8;
constexpr int linesOfHeader = 3;                  // with the space below it
constexpr QLatin1String continuation("        "); // before the rest of a long line
} // namespace

PagePrinter::PagePrinter(QPrinter &printer, const QString &header)
    : printer_(printer)
    , header_(header)
    , font_(QFontDatabase::systemFont(QFontDatabase::FixedFont))
{
    font_.setPointSize(pointSize);
}

PagePrinter::~PagePrinter()
{
    if (!rest_.isEmpty())
        printLine(QString::fromUtf8(rest_));
}

bool PagePrinter::open(OpenMode mode)
{
    if (!painter_.begin(&printer_))
        return false;
    painter_.setFont(font_);
    lineHeight_ = painter_.fontMetrics().lineSpacing();
    page_ = 0;
    return beginPage() && QIODevice::open(mode | Unbuffered);
}

qint64 PagePrinter::writeData(const char *data, qint64 size)
{
    rest_.append(data, size);
    qsizetype start = 0;
    for (qsizetype end; (end = rest_.indexOf('\n', start)) >= 0; start = end + 1) {
        if (!printLine(QString::fromUtf8(rest_.constData() + start, end - start)))
            return -1;
    }
    rest_.remove(0, start);
    return size;
}

bool PagePrinter::printLine(const QString &line)
{
    QString text = line;
    while (true) {
        const qsizetype length = fitting(text);
        if (!printPart(text.left(length)))
            return false;
        if (length >= text.size())
            return true;
        text = continuation + text.sliced(length);
    }
}

bool PagePrinter::printPart(const QString &text)
{
    if (y_ + lineHeight_ > painter_.viewport().height() && !(printer_.newPage() && beginPage()))
        return false;
    painter_.drawText(0, y_ + painter_.fontMetrics().ascent(), text);
    y_ += lineHeight_;
    return true;
}

bool PagePrinter::beginPage()
{
    const QRect line(0, 0, painter_.viewport().width(), lineHeight_);
    painter_.drawText(line, Qt::AlignLeft, header_);
    painter_.drawText(line, Qt::AlignRight, tr("Page %1").arg(++page_));
    painter_.drawLine(0, lineHeight_ + lineHeight_ / 2, line.width(),
                      lineHeight_ + lineHeight_ / 2);
    y_ = linesOfHeader * lineHeight_;
    return true;
}

// Halving finds the length fast, whatever the widths of the characters.
qsizetype PagePrinter::fitting(const QString &text) const
{
    const QFontMetrics metrics = painter_.fontMetrics();
    const int width = painter_.viewport().width();
    const qsizetype most = 2 * width / std::max(1, metrics.averageCharWidth());
    qsizetype fits = std::min<qsizetype>(text.size(), continuation.size() + 1);
    qsizetype tooLong = std::min(text.size(), most) + 1;
    while (fits + 1 < tooLong) {
        const qsizetype middle = (fits + tooLong) / 2;
        (metrics.horizontalAdvance(text, static_cast<int>(middle)) <= width ? fits : tooLong) =
            middle;
    }
    const bool isSplit = fits < text.size() && text[fits - 1].isHighSurrogate();
    return isSplit && fits > 1 ? fits - 1 : fits;
}
