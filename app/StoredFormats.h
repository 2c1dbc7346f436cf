// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/runloop/NotificationCenter.h"

#include <QString>

class TavDocumentController;

// Redraws values when another running copy of the program stored other formats.
class StoredFormats
{
public:
    explicit StoredFormats(TavDocumentController &documents);

private:
    void noteDefault();
    void refresh();

    TavDocumentController &documents_;
    QString default_; // as last shown
    NotificationCenter::Observation formatsObservation_;
    NotificationCenter::Observation defaultObservation_;
};
