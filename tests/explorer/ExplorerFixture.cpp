// SPDX-License-Identifier: Apache-2.0
#include "ExplorerFixture.h"

#include "display/TavPropertyOutlineItem.h"
#include "display/views/TavFormatController.h"
#include "platform/documents/DocumentError.h"
#include "platform/host/DesktopServices.h"
#include "platform/preferences/PreferencesStore.h"

#include <QAbstractButton>
#include <QClipboard>
#include <QGuiApplication>
#include <QJsonObject>
#include <stdexcept>

ExplorerFixture::ExplorerFixture()
{
    PreferencesStore::setFolder(preferences_.path());
    QJsonObject defaults = TavPropertyOutlineItem::defaultsToRegister();
    defaults.insert(QStringLiteral("DefaultPlane"), QStringLiteral("DxService"));
    defaults.insert(QStringLiteral("DefaultView"), QStringLiteral("outline"));
    PreferencesStore::standard().registerDefaults(defaults);
    TavRegistryEntry::setPropertyClass(TavPropertyOutlineItem::staticPropertyClass());
    DesktopServices::instance().beep = [this] { ++beeps_; };
    documents_.setWindowControllerFactory(
        [](TavDocument &document) { return std::make_unique<TavWindowController>(document); });
    QObject::connect(&TavFormatController::sharedInstance(),
                     &TavFormatController::dataViewOptionsChanged, &documents_,
                     &TavDocumentController::dataViewOptionsChanged);
}

ExplorerFixture::~ExplorerFixture()
{
    DesktopServices::instance().beep = nullptr;
    TavRegistryEntry::setPropertyClass(TavRegistryProperty::staticPropertyClass());
}

void ExplorerFixture::plantDisks()
{
    registry_.plane("DxService", R"(
        Root
          Host
            bus
              disk@0 : DxDisk : DxDevice : DxService : DxRegistryEntry
                part@1 : DxPart : DxRegistryEntry
              disk@1
            module : DxModule : DxRegistryEntry)");
    registry_.plane("DxPower", R"(
        Root
          Host
            supply
              disk@0)");
}

FakeRegistry::Node ExplorerFixture::add(const char *parent, const QByteArray &name)
{
    const FakeRegistry::Node node = service_.add(QStringLiteral("DxDevice"), name);
    service_.link(registry_[parent], node, "DxService");
    return node;
}

void ExplorerFixture::add(const char *parent, const QByteArray &name, int first, int count)
{
    for (int number = first; number < first + count; ++number)
        add(parent, name + QByteArray::number(number));
}

void ExplorerFixture::terminate(const char *label)
{
    TavRegistryEntry *const gone = entry(label);
    service_.remove(registry_[label]);
    gone->noteTerminatedAtDate(QDateTime::currentDateTimeUtc(), true);
}

void ExplorerFixture::open()
{
    follow(static_cast<TavDocument &>(*documents_.newDocument()));
    ASSERT_TRUE(QTest::qWaitForWindowActive(controller_->window()));
}

void ExplorerFixture::openFile(const QString &file)
{
    DocumentError error;
    auto *const opened = static_cast<TavDocument *>(documents_.openDocument(file, error));
    ASSERT_NE(opened, nullptr) << qPrintable(error.reason);
    follow(*opened);
}

void ExplorerFixture::openArchived(const char *name)
{
    const QString file = preferencesFolder() + u'/' + QLatin1String(name);
    DocumentError error;
    ASSERT_TRUE(document_->save(file, error)) << qPrintable(error.reason);
    close();
    openFile(file);
}

void ExplorerFixture::follow(TavDocument &document)
{
    document_ = &document;
    store_ = document.dataStore();
    controller_ = &controller(0);
    controller_->window()->resize(1120, 720); // as on a screen that has room for it
}

void ExplorerFixture::close()
{
    controller_ = nullptr;
    documents_.closeDocument(*std::exchange(document_, nullptr));
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

TavRegistryEntryPath ExplorerFixture::path(Labels labels, const char *plane) const
{
    TavRegistryEntryPath path(QString::fromLatin1(plane));
    for (const char *label : labels)
        path.appendRegistryEntry(entry(label)->shared_from_this());
    return path;
}

void ExplorerFixture::select(Labels labels, const char *plane)
{
    controller_->goToEntryPath(path(labels, plane), true, true);
}

std::string ExplorerFixture::selected() const
{
    return controller_->registryPathForSelectedEntry().toStdString();
}

void ExplorerFixture::showPlane(const char *plane)
{
    controller_->setRegistryPlane(QString::fromLatin1(plane), true);
}

void ExplorerFixture::find(const char *text)
{
    controller_->findWithString(QString::fromUtf8(text));
}

std::string ExplorerFixture::copied()
{
    return QGuiApplication::clipboard()->text().toStdString();
}

void ExplorerFixture::prefer(const char *key, const QJsonValue &value)
{
    PreferencesStore::standard().setValue(QString::fromLatin1(key), value);
}

void ExplorerFixture::click(const char *button) const
{
    outlet<QAbstractButton>(button)->click();
}

void ExplorerFixture::press(Qt::Key key, Qt::KeyboardModifiers modifiers) const
{
    QTest::keyClick(window().focusWidget(), key, modifiers);
}

TavWindowController &ExplorerFixture::controller(std::size_t number) const
{
    return static_cast<TavWindowController &>(*document_->windowControllers().at(number));
}

bool ExplorerFixture::activate(QWidget &window)
{
    window.activateWindow();
    return QTest::qWaitForWindowActive(&window);
}

TavRegistryOutlineView &ExplorerFixture::tree() const
{
    return *outlet<TavRegistryOutlineView>("registryOutlineView");
}

QModelIndex ExplorerFixture::row(Labels labels) const
{
    const auto items = tree().itemsForEntryPath(path(labels));
    const auto &source = *qobject_cast<TavRegistryOutlineViewDataSource *>(tree().model());
    return items.size() == labels.size() ? source.indexOf(*items.back()) : QModelIndex();
}

std::string ExplorerFixture::rows() const
{
    return rowsOf(tree());
}

void ExplorerFixture::testModelOf(const QAbstractItemView &view)
{
    tester_ = std::make_unique<QAbstractItemModelTester>(
        view.model(), QAbstractItemModelTester::FailureReportingMode::Fatal);
}

std::string rowsOf(const QTreeView &view)
{
    std::string rows;
    const QAbstractItemModel &model = *view.model();
    int first = 0;
    while (view.isRowHidden(first, {}))
        ++first;
    for (QModelIndex row = model.index(first, 0); row.isValid(); row = view.indexBelow(row)) {
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

void clickExpander(QTreeView &view, const QModelIndex &row, Qt::KeyboardModifiers modifiers)
{
    const QRect place = view.visualRect(row);
    QTest::mouseClick(view.viewport(), Qt::LeftButton, modifiers,
                      {place.left() - view.indentation() / 2, place.center().y()});
}
