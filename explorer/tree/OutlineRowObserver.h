#pragma once

class TavRegistryOutlineItem;

// Follows the rows that come and go below a node while it is reread, before and after each change.
class OutlineRowObserver
{
public:
    virtual ~OutlineRowObserver() = default;
    virtual void willRemoveRows(TavRegistryOutlineItem &parent, int first, int last) = 0;
    virtual void didRemoveRows() = 0;
    virtual void willInsertRows(TavRegistryOutlineItem &parent, int first, int last) = 0;
    virtual void didInsertRows(TavRegistryOutlineItem &parent, int first, int last) = 0;
};
