// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QFont>
#include <QIODevice>
#include <QPainter>

class QPrinter;

// Prints the lines written to it on numbered pages with a header, in a font of fixed pitch; long
// lines go on in the next. Made and opened on the main thread; may be written on another one.
class PagePrinter : public QIODevice
{
    Q_OBJECT
public:
    PagePrinter(QPrinter &printer, const QString &header);
    ~PagePrinter() override; // prints the rest

    bool open(OpenMode mode) override;

protected:
    qint64 readData(char *, qint64) override { return -1; }
    qint64 writeData(const char *data, qint64 size) override;

private:
    bool printLine(const QString &line);
    bool printPart(const QString &text);
    bool beginPage();
    qsizetype fitting(const QString &text) const; // characters of its start on a line

    QPrinter &printer_;
    QString header_;
    QFont font_;
    QPainter painter_;
    QByteArray rest_; // of a line
    int page_ = 0;
    int lineHeight_ = 0;
    int y_ = 0; // of the next line
};
