#include "ExplorerFixture.h"

#include "display/TavPropertyOutlineItem.h"
#include "display/views/TavFormatController.h"
#include "platform/PreferencesStore.h"
#include "platform/SystemBeep.h"

#include <QJsonObject>
#include <QTest>
#include <QTreeView>
#include <stdexcept>

ExplorerFixture::ExplorerFixture()
{
    PreferencesStore::setFolder(preferences_.path());
    QJsonObject defaults = TavPropertyOutlineItem::defaultsToRegister();
    defaults.insert(QStringLiteral("DefaultPlane"), QStringLiteral("DxService"));
    defaults.insert(QStringLiteral("DefaultView"), QStringLiteral("outline"));
    PreferencesStore::standard().registerDefaults(defaults);
    TavRegistryEntry::setPropertyClass(TavPropertyOutlineItem::staticPropertyClass());
    SystemBeep::setSounder([this] { ++beeps_; });
    documents_.setWindowControllerFactory(
        [](TavDocument &document) { return std::make_unique<TavWindowController>(document); });
    QObject::connect(&TavFormatController::sharedInstance(),
                     &TavFormatController::dataViewOptionsChanged, &documents_,
                     &TavDocumentController::dataViewOptionsChanged);
}

ExplorerFixture::~ExplorerFixture()
{
    SystemBeep::setSounder({});
    TavRegistryEntry::setPropertyClass(TavRegistryProperty::staticPropertyClass());
}

void ExplorerFixture::open()
{
    document_ = &static_cast<TavDocument &>(documents_.newDocument());
    store_ = document_->dataStore();
    controller_ = static_cast<TavWindowController *>(document_->windowControllers().front().get());
    ASSERT_TRUE(QTest::qWaitForWindowActive(controller_->window()));
}

void ExplorerFixture::close()
{
    controller_ = nullptr;
    documents_.closeDocument(*std::exchange(document_, nullptr));
}

void ExplorerFixture::terminate(const char *label)
{
    TavRegistryEntry *const gone = entry(label);
    service_.remove(registry_[label]);
    gone->noteTerminatedAtDate(QDateTime::currentDateTimeUtc(), true);
}

TavRegistryEntry *ExplorerFixture::entry(const char *label) const
{
    const auto &entries = store_->registryEntries();
    const auto found = std::find_if(entries.begin(), entries.end(), [&](const EntryRef &entry) {
        return entry->entryTag() == registry_[label];
    });
    if (found == entries.end())
        throw std::invalid_argument(label);
    return found->get();
}

TavRegistryEntryPath ExplorerFixture::path(std::initializer_list<const char *> labels,
                                           const char *plane) const
{
    TavRegistryEntryPath path(QString::fromLatin1(plane));
    for (const char *label : labels)
        path.appendRegistryEntry(entry(label)->shared_from_this());
    return path;
}

std::string rowsOf(const QTreeView &view)
{
    std::string rows;
    const QAbstractItemModel &model = *view.model();
    for (QModelIndex row = model.index(0, 0); row.isValid(); row = view.indexBelow(row)) {
        std::string indentation;
        for (QModelIndex parent = row.parent(); parent.isValid(); parent = parent.parent())
            indentation += "  ";
        rows += indentation + row.data().toString().toStdString();
        for (int column = 1; column < model.columnCount(); ++column)
            rows += " | " + row.siblingAtColumn(column).data().toString().toStdString();
        if (model.hasChildren(row) && !view.isExpanded(row))
            rows += " +";
        if (view.selectionModel()->isRowSelected(row.row(), row.parent()))
            rows += " *";
        rows += '\n';
    }
    return rows;
}
