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

// Lets the user choose, in a floating panel, how the selected property is shown and for which class
// of entries. One for the application. Main thread only.
class TavFormatController : public QObject
{
    Q_OBJECT
public:
    enum class DataSettingsStatus { Default, Shared, Custom };

    static TavFormatController &sharedInstance();

    // How an entry's name is drawn.
    static const EntryTextAttributes &textAttributesForRegistryState(RegistryState registryState,
                                                                     FindState findState,
                                                                     bool isRootEntry);
    static QString descriptorForPropertyFormats(const PropertyFormatOptions &options);
    static PropertyFormatOptions propertyFormatForDescriptor(const QString &descriptor);

    // What the panel shows; it is loaded on first use.
    QDialog &propertyFormatPanel();
    PropertyFormatOptions propertyFormat();
    QString propertyFormatDescriptor();
    void setPropertyFormats(const PropertyFormatOptions &options);
    void setPropertyFormatsFromDescriptor(const QString &descriptor); // null: nothing is done

    // Null, and what cannot be shown, stand for no property.
    void setSelectedPropertyItem(TavRegistryProperty *item);
    TavPropertyOutlineItem *selectedPropertyItem() const { return selectedItem_; }
    // An entry was reread. What is selected in its older tree is found again by its key path; when
    // that is gone, the new root is selected, and the panel says so.
    void noteEntryReread(const PropertyRef &olderRoot, const PropertyRef &newRoot);
    DataSettingsStatus dataSettingsStatus() const { return status_; }

    // What the user does in the panel goes there from now on, to be undone: to the stack of the
    // window that the selected property belongs to. Without one it cannot be undone.
    void setUndoStack(QUndoStack &stack);
    QUndoStack *undoStack() const { return undoGroup_.activeStack(); }
    void noteFormatsRestored(const PropertyRef &item); // that were changed for the item

    bool isPropertyFormatPanelVisible() const;
    void togglePropertyFormatPanel();
    void showPropertyFormatPanel();
    // The command of a window to show or hide the panel: triggers that, and is titled after it.
    void addTogglePropertyFormatPanelMenuItem(QAction &action);
    // Titles the item after the state. Whether its command can run now.
    bool validateMenuItem(QAction &item) const;

    // What the panel's controls and its menu do.
    void dataViewOptionChanged(bool isClassChange);
    void propertyFormatActionMenuChanged(int tag);
    void setDefaultPropertyFormats();
    void clearCustomSettings();
    void clearContainedPropertySettings();
    void clearSubclassSettings();
    void _readDefaultPropertyFormats();
    bool _hasEligibleDataSettingsTarget() const; // one that is formatted, or contains such
    bool _hasCollectionDataSettingsTarget() const;

Q_SIGNALS:
    // A stored format has changed. The item is the one that was edited, or null for the default.
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
    // Does what can be undone.
    void change(const QString &title, const std::function<void()> &action);
    QString formatTitle() const;
    QString actionTitle(int tag) const;
    void validateMenuItems();
    void noteOptionsChanged();

    std::unique_ptr<PropertyFormatPanel> panel_;
    std::vector<QPointer<QAction>> toggleItems_;
    std::shared_ptr<TavRegistryEntry> selectedRegistryEntry_;
    PropertyRef keptItem_; // keeps the tree of the selected one
    TavPropertyOutlineItem *selectedItem_ = nullptr;
    DataSettingsStatus status_ = DataSettingsStatus::Default;
    QUndoGroup undoGroup_; // of the windows' stacks
};
