// SPDX-License-Identifier: Apache-2.0
#pragma once

class QWidget;

// What a document needs from each of its windows.
class DocumentWindowController
{
public:
    virtual ~DocumentWindowController() = default;
    virtual QWidget *documentWindow() const = 0; // never null
    virtual void showWindow() = 0;
    virtual void synchronizeWindowTitleWithDocumentName() = 0;
};
