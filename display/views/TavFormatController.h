// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "display/EntryTextAttributes.h"
#include "display/PropertyFormatOptions.h"
#include "model/TavRegistryProperty.h"

#include <QObject>
#include <QPointer>
#include <QUndoGroup>
#include <functional>

class PropertyFormatPanel;
class QAction;
class QDialog;
class TavPropertyOutlineItem;

// Lets the user choose, in a floating panel, how the selected property is shown, and for which
// class of entries. One for the application. Main thread only.
class TavFormatController : public QObject
{
    Q_OBJECT
public:
    enum class DataSettingsStatus { Default, Shared, Custom };

    static TavFormatController &sharedInstance();

    // The style of an entry's name.
    static const EntryTextAttributes &textAttributesForRegistryState(RegistryState registryState,
                                                                     FindState findState,
                                                                     bool isRootEntry);
    static QString descriptorForPropertyFormats(const PropertyFormatOptions &options);
    static PropertyFormatOptions propertyFormatForDescriptor(const QString &descriptor);

    // What the panel shows; loads it on first use.
    QDialog &propertyFormatPanel();
    PropertyFormatOptions propertyFormat();
    QString propertyFormatDescriptor();
    void setPropertyFormats(const PropertyFormatOptions &options);
    void setPropertyFormatsFromDescriptor(const QString &descriptor); // null: does nothing

    // Null, or a property that cannot be shown: no selection.
    void setSelectedPropertyItem(TavRegistryProperty *item);
    TavPropertyOutlineItem *selectedPropertyItem() const { return selectedItem_; }
    // An entry was reread. Finds the selected property of its older tree by its key path; if it is
    // gone, the new root is selected, and the panel says so.
    void noteEntryReread(const PropertyRef &olderRoot, const PropertyRef &newRoot);
    DataSettingsStatus dataSettingsStatus() const { return status_; }

    // Makes the panel's changes undoable from now on: on the stack of the window of the selected
    // property. Without a stack they cannot be undone.
    void setUndoStack(QUndoStack &stack);
    QUndoStack *undoStack() const { return undoGroup_.activeStack(); }
    void noteFormatsRestored(const PropertyRef &item); // formats changed for the item

    bool isPropertyFormatPanelVisible() const;
    void togglePropertyFormatPanel();
    void showPropertyFormatPanel();
    // Connects a window's command that shows or hides the panel, and keeps its title up to date.
    void addTogglePropertyFormatPanelMenuItem(QAction &action);
    // Sets the item's title. Returns whether its command can run now.
    bool validateMenuItem(QAction &item) const;

    // Without the panel: stores the format for the class of the selected property's entry, or
    // removes the one that is stored for the property.
    void formatSelectionForItsClass(const PropertyFormatOptions &options);
    void resetFormatOfSelection();

    // Actions of the panel's controls and its menu.
    void dataViewOptionChanged(bool isClassChange);
    void propertyFormatActionMenuChanged(int tag);
    void setDefaultPropertyFormats();
    void clearCustomSettings();
    void clearContainedPropertySettings();
    void clearSubclassSettings();
    void _readDefaultPropertyFormats();
    bool _hasEligibleDataSettingsTarget() const; // formatted, or contains such properties
    bool _hasCollectionDataSettingsTarget() const;

Q_SIGNALS:
    // Call this after a change of a stored format. The item is the edited one, or null for the
    // default.
    void dataViewOptionsChanged(TavRegistryProperty *item);

private:
    TavFormatController();
    ~TavFormatController() override;

    PropertyFormatPanel &panel();
    void addUndoKeys();
    void selectItem(TavRegistryProperty *item);
    void showSelection();
    void showFormat(const PropertyFormatOptions &options);
    QString message() const;
    void setStatus(DataSettingsStatus status, const QString &text);
    void noteTargetGone(const QString &title);
    // Runs an undoable change.
    void change(const QString &title, const std::function<void()> &action);
    QString formatTitle() const;
    QString actionTitle(int tag) const;
    void validateMenuItems();
    void noteOptionsChanged();

    std::unique_ptr<PropertyFormatPanel> panel_;
    std::vector<QPointer<QAction>> toggleItems_;
    std::shared_ptr<TavRegistryEntry> selectedRegistryEntry_;
    PropertyRef keptItem_; // keeps the selected item's tree alive
    TavPropertyOutlineItem *selectedItem_ = nullptr;
    DataSettingsStatus status_ = DataSettingsStatus::Default;
    QUndoGroup undoGroup_; // the windows' stacks
};
