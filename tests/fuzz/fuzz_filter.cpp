// SPDX-License-Identifier: Apache-2.0
// A filter expression: the first line. Each further line is an entry, nested by leading spaces:
// name, location, class and keys with their values, each followed by a tab. An error must be
// somewhere in the text. An expression and its opposite must share out the entries, and combining
// an expression with itself must change nothing.

#include "FuzzedLines.h"
#include "Fuzzing.h"
#include "store/TavDataStore.h"
#include "store/filter/FilterExpression.h"
#include "store/filter/KeysOccurring.h"
#include "tests/support/FakeLiveService.h"

namespace {
// Numbers, booleans, data and dates come from texts that look like them.
RegistryValue scalar(const QString &text)
{
    bool isNumber = false;
    const qlonglong number = text.toLongLong(&isNumber, 0);
    if (isNumber)
        return RegistryValue::number(static_cast<quint64>(number), 8, number < 0);
    if (text == QLatin1String("Y") || text == QLatin1String("N"))
        return RegistryValue::boolean(text == QLatin1String("Y"));
    if (text.startsWith(u'#'))
        return RegistryValue::data(text.toUtf8());
    const QDateTime date = QDateTime::fromString(text, Qt::ISODate);
    return date.isValid() ? RegistryValue::date(date) : RegistryValue::string(text);
}

// Every third key is below the one before, in a list.
RegistryValue properties(const QByteArrayList &fields)
{
    RegistryValue::Members members;
    for (qsizetype i = 3; i < fields.size(); i += 2) {
        const CompactString key(QString::fromUtf8(fields[i]));
        const RegistryValue value = scalar(QString::fromUtf8(fields.value(i + 1)));
        if (i % 3 == 0 && !members.empty())
            members.back().value = RegistryValue::array(
                {members.back().value, RegistryValue::dictionary({{key, value}})});
        else
            members.push_back({key, value});
    }
    return RegistryValue::dictionary(std::move(members));
}

void build(FakeRegistryService &service, const QByteArray &outline)
{
    const auto root = service.add(QStringLiteral("DxRoot"), "Root");
    service.setRoot(root);
    std::vector<FakeRegistry::Node> path{service.add(QStringLiteral("DxHost"), "Host")};
    service.link(root, path.front(), "DxService");
    for (const auto &[depth, text] : fuzzedLines(outline)) {
        const QByteArrayList fields = text.split('\t');
        const auto node =
            service.add(QString::fromUtf8(fields.value(2)), fields[0], fields.value(1));
        service.setProperties(node, properties(fields));
        path.resize(depth + 1);
        service.link(path.back(), node, "DxService");
        path.push_back(node);
    }
    service.publishPlanes();
}

// None where the text is no expression, or takes too long.
std::optional<EntrySet> found(TavDataStore &store, const QString &text)
{
    auto filter = FilterExpression::parse(text);
    if (!filter) {
        const FilterError &error = filter.error();
        require(!error.message.isEmpty() && error.position >= 0 && error.length >= 0 &&
                error.position + error.length <= text.size());
        return std::nullopt;
    }
    EntrySet matches;
    const bool isComplete = store.runFilter(*filter, &matches, nullptr);
    return isComplete ? std::optional(matches) : std::nullopt;
}
} // namespace

int LLVMFuzzerTestOneInput(const quint8 *data, std::size_t size)
{
    const QByteArray input = fuzzedBytes(data, size);
    const qsizetype end = input.indexOf('\n');
    const QString text = QString::fromUtf8(end < 0 ? input : input.first(end));
    FakeLiveService service;
    build(service, input.mid(end < 0 ? input.size() : end + 1));
    const auto store = TavDataStore::initFromDxRegistry(service);
    keysOccurring(*store);
    const auto matches = found(*store, text);
    if (!matches)
        return 0;
    const QString group = u'(' + text + u')';
    const auto twice = found(*store, group + QStringLiteral(" and ") + group);
    require(!twice || *twice == *matches);
    const auto others = found(*store, QStringLiteral("not ") + group);
    if (others) {
        require(EntrySet(*others).intersect(*matches).isEmpty());
        require(others->size() + matches->size() ==
                static_cast<qsizetype>(store->registryEntries().size()));
    }
    return 0;
}
