#pragma once

#include "display/EntryTextAttributes.h"
#include "display/PropertyFormatOptions.h"
#include "model/TavRegistryProperty.h"

#include <QObject>
#include <QPointer>

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
    DataSettingsStatus dataSettingsStatus() const { return status_; }

    bool isPropertyFormatPanelVisible() const;
    void togglePropertyFormatPanel();
    void showPropertyFormatPanel();
    // The command of a window to show or hide the panel: triggers that, and is titled after it.
    void addTogglePropertyFormatPanelMenuItem(QAction &action);

Q_SIGNALS:
    // A stored format has changed. The item is the one that was edited, or null for the default.
    void dataViewOptionsChanged(TavRegistryProperty *item);

private:
    TavFormatController();
    ~TavFormatController() override;

    PropertyFormatPanel &panel();
    void dataViewOptionChanged(bool isClassChange);
    void propertyFormatActionMenuChanged(int tag);
    void setDefaultPropertyFormats();
    void clearCustomSettings();
    void clearContainedPropertySettings();
    void clearSubclassSettings();
    void validateMenuItems();
    void _readDefaultPropertyFormats();
    bool _hasCollectionDataSettingsTarget() const;
    void showSelection();
    void setStatus(DataSettingsStatus status, const QString &text);
    void noteOptionsChanged();

    std::unique_ptr<PropertyFormatPanel> panel_;
    std::vector<QPointer<QAction>> toggleItems_;
    std::shared_ptr<TavRegistryEntry> selectedRegistryEntry_;
    PropertyRef keptItem_; // keeps the tree of the selected one
    TavPropertyOutlineItem *selectedItem_ = nullptr;
    DataSettingsStatus status_ = DataSettingsStatus::Default;
};
