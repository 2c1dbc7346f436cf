// SPDX-License-Identifier: Apache-2.0
#include "explorer/selection/RegistryPathHint.h"

#include "platform/widgets/FactField.h"
#include "platform/widgets/ReadableColor.h"

#include <QCoreApplication>
#include <QInputMethodEvent>
#include <QTextCharFormat>

RegistryPathHint::RegistryPathHint(QLineEdit &field, FactField &message)
    : QObject(&field)
    , field_(field)
    , message_(message)
{}

void RegistryPathHint::show(const RegistryPathReader::Problem &problem)
{
    message_.setFact(problem ? problem->message : QString());
    field_.setAccessibleDescription(message_.text());
    mark(problem);
}

// A line edit takes formats from an input method event, which counts from the cursor.
void RegistryPathHint::mark(const RegistryPathReader::Problem &problem)
{
    QList<QInputMethodEvent::Attribute> attributes;
    if (problem) {
        const QColor color = readableColor(Qt::red, field_.palette());
        QTextCharFormat format;
        format.setForeground(color);
        format.setUnderlineColor(color);
        format.setUnderlineStyle(QTextCharFormat::WaveUnderline);
        attributes.append({QInputMethodEvent::TextFormat,
                           static_cast<int>(problem->start) - field_.cursorPosition(),
                           static_cast<int>(problem->length), format});
    }
    QInputMethodEvent event(QString(), attributes);
    QCoreApplication::sendEvent(&field_, &event);
}
