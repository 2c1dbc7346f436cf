// SPDX-License-Identifier: Apache-2.0
#include "explorer/selection/RegistryPathHint.h"

#include "platform/widgets/FactField.h"
#include "platform/widgets/TextMark.h"

#include <QLineEdit>

RegistryPathHint::RegistryPathHint(QLineEdit &field, FactField &message)
    : QObject(&field)
    , field_(field)
    , message_(message)
{}

void RegistryPathHint::show(const RegistryPathReader::Problem &problem)
{
    message_.setFact(problem ? problem->message : QString());
    field_.setAccessibleDescription(message_.text());
    markText(field_, problem ? problem->start : 0, problem ? problem->length : 0);
}
