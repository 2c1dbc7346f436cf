// SPDX-License-Identifier: Apache-2.0
#include "platform/widgets/TextMark.h"

#include "platform/widgets/ReadableColor.h"

#include <QCoreApplication>
#include <QInputMethodEvent>
#include <QLineEdit>
#include <QTextCharFormat>

// A line edit takes formats from an input method event, which counts from the cursor.
void markText(QLineEdit &field, qsizetype start, qsizetype length)
{
    QList<QInputMethodEvent::Attribute> attributes;
    if (length > 0) {
        const QColor color = readableColor(Qt::red, field.palette());
        QTextCharFormat format;
        format.setForeground(color);
        format.setUnderlineColor(color);
        format.setUnderlineStyle(QTextCharFormat::WaveUnderline);
        attributes.append({QInputMethodEvent::TextFormat,
                           static_cast<int>(start) - field.cursorPosition(),
                           static_cast<int>(length), format});
    }
    QInputMethodEvent event(QString(), attributes);
    QCoreApplication::sendEvent(&field, &event);
}
