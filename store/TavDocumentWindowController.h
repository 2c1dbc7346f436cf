// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/documents/DocumentWindowController.h"

class TavRegistryProperty;

// A window on a data store, as notified by its document.
class TavDocumentWindowController : public DocumentWindowController
{
public:
    virtual void noteDataStoreOutOfDate() = 0;
    virtual void noteDataStoreChanged() = 0;
    virtual void noteDataStoreObjectChanged() = 0;
    virtual void noteDataStoreObjectsTerminated() = 0;
    virtual void noteDataStoreClearedTerminatedObjects() = 0;
    // The display options of a property have changed.
    virtual void dataViewOptionsChanged(TavRegistryProperty *item) = 0;
};
