// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "explorer/selection/RegistryPathReader.h"

#include <QObject>

class FactField;
class QLineEdit;

// Marks the wrong part of the path in a field and explains it in another field.
class RegistryPathHint : public QObject
{
    Q_OBJECT
public:
    // The field owns it; the other must outlive it.
    RegistryPathHint(QLineEdit &field, FactField &message);

    void show(const RegistryPathReader::Problem &problem);

private:
    QLineEdit &field_;
    FactField &message_;
};
