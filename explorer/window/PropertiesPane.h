// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "compare/PropertyDifferences.h"
#include "display/views/PropertiesViewController.h"
#include "model/TavRegistryEntry.h"

#include <QObject>
#include <variant>

class AttributeRequests;
class ComparisonStore;
class FollowedValues;
class Plots;
class QMainWindow;
class QUndoStack;
class SearchField;
class TavDataStore;
class TavPropertiesOutlineView;
class TavPropertiesOutlineViewDataSource;
class ValuePreferences;

// A step into a property tree: the index of a child, or its name.
using PropertyPathMember = std::variant<qsizetype, QString>;

// The properties of the selected entry, what the user changes in their formats, and the attributes
// that are only read on request.
class PropertiesPane : public QObject, public PropertiesViewController
{
    Q_OBJECT
public:
    // The window owns the view and must be destroyed before this. With a comparison, which must
    // outlive this, the old values are shown, too. The plots must outlive this.
    PropertiesPane(QMainWindow &window, const std::shared_ptr<TavDataStore> &dataStore,
                   const ComparisonStore *comparison, Plots &plots,
                   const ValuePreferences &preferences);
    ~PropertiesPane() override;

    void showPropertiesOf(const EntryRef &entry); // null: of none
    const PropertyRef &rootPropertyItem() const override { return rootPropertyItem_; }
    QWidget *view() const;
    QWidget *filterField() const;
    void beginFilter();
    void clearSelection();
    void refreshPropertiesOutlineView();
    // The format controller formats what is selected here.
    void propertiesViewSelectionChanged() override;
    void dataViewOptionsChanged(TavRegistryProperty *item);
    void selectPropertyKeyIndexPath(const std::vector<PropertyPathMember> &path);
    void scrollToSelection();
    // The selected rows while the view has the keyboard, else null.
    QString selectedText() const;

    Reading readingOfAttribute(const QString &attribute) const override;
    void readAttribute(const QString &attribute) override;
    Plotting plotting(const TavRegistryProperty &item) const override;
    void togglePlot(const TavRegistryProperty &item) override;
    const PlotLine *sparklineOf(const TavRegistryProperty &item) const override;
    std::optional<ValueChange> changeOf(const TavRegistryProperty &item) const override;
    void updateFollowing(); // the store may have been paused
    bool comparesValues() const override { return comparison_; }
    const TavRegistryProperty *olderOf(const TavRegistryProperty &item) const override;
    RegistryState differenceState(const TavRegistryProperty &item) const override;
    bool isLink(const TavRegistryProperty &item) const override;
    void followLink(const TavRegistryProperty &item, bool inNewWindow) override;
    void readSelectedAttribute();
    bool canReadSelectedAttribute() const;
    bool isCurrent(const QString &attribute) const;
    void goToAttribute(const QString &attribute);

    void undo(); // the last change of formats that was made from this window
    void redo();
    bool canUndo() const;
    bool canRedo() const;
    QString undoTitle() const;
    QString redoTitle() const;

Q_SIGNALS:
    void undoStackChanged();
    void linkFollowed(const EntryRef &target, bool inNewWindow);
    void attributeRead(quint64 entryTag, const QString &attribute);
    void plotAdded();
    void followingStopped(const QString &attribute); // it did not answer

private:
    void setUpFormats(QMainWindow &window);
    void setUpFilter();
    void showChangedTree(const PropertyRef &previousRoot);
    void selectPropertyItem(TavRegistryProperty *item);

    void setUpFollowing();
    void setUpPlots();
    const PlotLine *plotOf(const TavRegistryProperty &item) const; // null: none
    void noteDifferences();
    void showFirstDifference();
    TavRegistryEntry *linkTarget(const TavRegistryProperty &item) const;

    std::shared_ptr<TavDataStore> dataStore_;
    const ComparisonStore *comparison_; // null: none
    PropertyDifferences differences_;
    const TavRegistryProperty *firstDiffering_ = nullptr;
    QSet<const TavRegistryProperty *> differing_;      // values and collections that differ
    QSet<const TavRegistryProperty *> aboveDiffering_; // collections that these are in
    EntryRef entry_;
    PropertyRef rootPropertyItem_;
    std::unique_ptr<TavPropertiesOutlineViewDataSource> dataSource_;
    std::unique_ptr<AttributeRequests> attributeRequests_;
    Plots &plots_;
    const ValuePreferences &valuePreferences_;
    std::unique_ptr<FollowedValues> followedValues_;
    std::unique_ptr<QUndoStack> undoStack_;
    TavPropertiesOutlineView *propertiesOutlineView_;
    SearchField *filterField_;
};
