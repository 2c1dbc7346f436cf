// SPDX-License-Identifier: Apache-2.0
// A search must find what a plain scan of every text finds. The first byte holds the options, the
// rest of its line is the text to find. Each further line is an entry, nested by leading spaces:
// name, location, class and keys with their values, each followed by a tab.

#include "FuzzedLines.h"
#include "Fuzzing.h"
#include "store/TavDataStore.h"
#include "tests/support/FakeLiveService.h"

namespace {
struct Entry
{
    QStringList keys;
    QStringList values;
};
const QString base = QStringLiteral("DxEntry");
const QString keyOfSet = QStringLiteral("~");

using Entries = QHash<FakeRegistry::Node, Entry>;

// Values in an array, without keys, and in a set, which searches skip.
RegistryValue properties(const Entry &entry)
{
    RegistryValue::Members members;
    for (qsizetype i = 0; i < entry.keys.size(); ++i) {
        const RegistryValue value = RegistryValue::string(entry.values.value(i));
        const auto list = i % 3 == 0 ? RegistryValue::array({value})
                          : i % 3 == 1
                              ? RegistryValue::dictionary({{CompactString(entry.keys[i]), value}})
                              : value;
        members.push_back({CompactString(entry.keys[i]), list});
    }
    members.push_back({CompactString(keyOfSet),
                       RegistryValue::set({RegistryValue::string(QStringLiteral("hidden"))})});
    return RegistryValue::dictionary(std::move(members));
}

Entries build(FakeRegistryService &service, const QByteArray &outline)
{
    Entries entries;
    const auto root = service.add(QStringLiteral("DxRoot"), "Root");
    service.setRoot(root);
    std::vector<FakeRegistry::Node> path{service.add(QStringLiteral("DxHost"), "Host")};
    service.link(root, path.front(), "DxService");
    entries.insert(path.front(), {});
    for (const auto &[depth, text] : fuzzedLines(outline)) {
        const QByteArrayList fields = text.split('\t');
        const QString className = QString::fromUtf8(fields.value(2));
        if (className != base)
            service.addClass(className, base, QStringLiteral("org.bundle"));
        const auto node = service.add(className, fields[0], fields.value(1));
        Entry entry;
        for (qsizetype i = 3; i < fields.size(); i += 2) {
            entry.keys.append(QString::number(i) + QString::fromUtf8(fields[i]));
            entry.values.append(QString::fromUtf8(fields.value(i + 1)));
        }
        service.setProperties(node, properties(entry));
        entry.keys.append(keyOfSet);
        entries.insert(node, entry);
        path.resize(depth + 1);
        service.link(path.back(), node, "DxService");
        path.push_back(node);
    }
    service.publishPlanes();
    return entries;
}

class PlainSearch
{
public:
    PlainSearch(const Entries &entries, const QString &query, FindOptions options)
        : entries_(entries)
        , query_(query)
        , options_(options)
    {}
    bool matches(const TavRegistryEntry &entry) const
    {
        const QString plane = QStringLiteral("DxService");
        const QString name = entry.nameInPlane(plane);
        const QString location = entry.locationInPlane(plane);
        const Entry its = entries_.value(static_cast<FakeRegistry::Node>(entry.entryTag()),
                                         {{QStringLiteral("DxRegistryPlanes"), plane}, {}});
        const auto special = TavRegistryEntry::specialTest(query_);
        return (looksAt(FindOption::Name) &&
                isIn(location.isNull() ? QStringList{name}
                                       : QStringList{name, location, name + u'@' + location})) ||
               (looksAt(FindOption::Class) && isIn({entry.DxcoreClass()})) ||
               (looksAt(FindOption::Inheritance) && isIn(entry.inheritance())) ||
               (looksAt(FindOption::BundleID) && isIn({entry.bundleID()})) ||
               (looksAt(FindOption::Keys) && isIn(its.keys)) ||
               (looksAt(FindOption::Values) && isIn(its.values)) ||
               (looksAt(FindOption::Special) && special && special(entry));
    }

private:
    bool looksAt(FindOption option) const { return !options_ || options_.testFlag(option); }
    bool isIn(const QStringList &texts) const
    {
        return !query_.isEmpty() && std::any_of(texts.begin(), texts.end(), [&](auto &text) {
            return text.contains(query_, Qt::CaseInsensitive);
        });
    }

    const Entries &entries_;
    QString query_;
    FindOptions options_;
};

void check(TavDataStore &store, const PlainSearch &plain, const QString &query, FindOptions options)
{
    const QString plane = QStringLiteral("DxService");
    EntrySet found;
    QHash<QString, EntrySet> above;
    store.runQuery(query, options, &found, &above);
    EntrySet expected;
    EntrySet expectedAbove;
    for (const EntryRef &entry : store.registryEntries()) {
        if (!plain.matches(*entry))
            continue;
        expected.insert(entry.get());
        const TavRegistryEntry *parent = entry.get();
        while (!parent->parentsInPlane(plane).empty()) {
            parent = parent->parentsInPlane(plane).front();
            expectedAbove.insert(const_cast<TavRegistryEntry *>(parent));
        }
    }
    require(found == expected);
    require(above.value(plane) == expectedAbove);
}
} // namespace

int LLVMFuzzerTestOneInput(const quint8 *data, std::size_t size)
{
    if (size == 0)
        return 0;
    const QByteArray input = fuzzedBytes(data + 1, size - 1);
    const qsizetype end = input.indexOf('\n');
    const FindOptions options(data[0]);
    const QString query = QString::fromUtf8(end < 0 ? input : input.first(end));
    FakeLiveService service;
    const Entries entries = build(service, input.mid(end + 1));
    const auto store = TavDataStore::initFromDxRegistry(service);
    // As typed, letter by letter.
    constexpr qsizetype maxLetters = 8;
    for (qsizetype letters = std::max<qsizetype>(0, query.size() - maxLetters);
         letters <= query.size(); ++letters) {
        const QString typed = query.left(letters);
        if (!typed.isEmpty() && typed.back().isHighSurrogate())
            continue; // users do not type half a character
        check(*store, PlainSearch(entries, typed, options), typed, options);
    }
    return 0;
}
