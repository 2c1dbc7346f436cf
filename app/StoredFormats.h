#pragma once

#include "platform/runloop/NotificationCenter.h"

#include <QString>

class TavDocumentController;

// Shows values in the formats that another running copy of the program has stored.
class StoredFormats
{
public:
    explicit StoredFormats(TavDocumentController &documents);

private:
    void noteDefault();
    void refresh();

    TavDocumentController &documents_;
    QString default_; // as it was last shown
    NotificationCenter::Observation formatsObservation_;
    NotificationCenter::Observation defaultObservation_;
};
