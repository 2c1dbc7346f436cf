// SPDX-License-Identifier: Apache-2.0
#pragma once

class TavRegistryOutlineItem;

// Notified before and after each change of the rows below a node that is being reread.
class OutlineRowObserver
{
public:
    virtual ~OutlineRowObserver() = default;
    virtual void willRemoveRows(TavRegistryOutlineItem &parent, int first, int last) = 0;
    virtual void didRemoveRows() = 0;
    virtual void willInsertRows(TavRegistryOutlineItem &parent, int first, int last) = 0;
    virtual void didInsertRows(TavRegistryOutlineItem &parent, int first, int last) = 0;
};
