// SPDX-License-Identifier: Apache-2.0
#include "store/filter/FilterFields.h"

#include "model/ChainsUp.h"
#include "store/EntryLocator.h"

namespace {
using Kind = FilterField::Kind;
using Predicate = std::function<bool(const RegistryValue &)>;

constexpr std::size_t maxPathSteps = 10'000; // in each plane

bool test(const Predicate &predicate, const QString &text)
{
    return !text.isNull() && predicate(RegistryValue::string(text));
}

// Calls action with every name of the entry and its location, which may be null; ends when it
// returns true.
template<class Action>
bool anyName(const TavRegistryEntry &entry, Action action)
{
    const EntryRecord &facts = entry.facts();
    if (action(facts.name, facts.location))
        return true;
    for (const auto *table : {&facts.namesInPlanes, &facts.locationsInPlanes}) {
        if (table->areAllAt(table == &facts.namesInPlanes ? facts.name.constData()
                                                          : facts.location.constData()))
            continue;
        for (std::size_t i = 0; i < table->size(); ++i) {
            const QString plane = table->plane(i);
            if (action(entry.nameInPlane(plane), entry.locationInPlane(plane)))
                return true;
        }
    }
    return false;
}

bool anyState(const TavRegistryEntry &entry, const Predicate &predicate)
{
    const auto &words = FilterFields::stateWords();
    return std::any_of(words.begin(), words.end(), [&](const QString &word) {
        return entry.matchesSpecial(word) && predicate(RegistryValue::string(word));
    });
}

template<class Action>
bool anyPlane(const TavRegistryEntry &entry, Action action)
{
    const auto &parents = entry.facts().parentsInPlanes;
    const auto &children = entry.facts().childrenInPlanes;
    const auto isUsed = [](const auto &item) { return !item.value.entries().empty(); };
    if (entry.isRegistryRoot())
        return std::any_of(children.begin(), children.end(),
                           [&](const auto &item) { return isUsed(item) && action(item.plane()); });
    return std::any_of(parents.begin(), parents.end(),
                       [&](const auto &item) { return isUsed(item) && action(item.plane()); });
}

bool anyPathInPlane(const TavRegistryEntry &entry, const QString &plane, const Predicate &predicate)
{
    bool found = false;
    const auto isTop = [](const TavRegistryEntry &above) { return above.isRegistryRoot(); };
    const auto mayClimb = [&](const auto &, const auto &) { return !found; };
    ChainsUp::forEach(entry, plane, maxPathSteps, isTop, mayClimb, [&](const auto &chain) {
        if (found)
            return;
        QString path = plane + u':';
        for (auto above = chain.rbegin() + 1; above != chain.rend(); ++above)
            path += u'/' + (*above)->nameAtLocationInPlane(plane);
        found = test(predicate, path);
    });
    return found;
}
} // namespace

const QStringList &FilterFields::names()
{
    static const QStringList names{
        QStringLiteral("name"),   QStringLiteral("class"), QStringLiteral("inheritance"),
        QStringLiteral("bundle"), QStringLiteral("state"), QStringLiteral("path"),
        QStringLiteral("plane"),
    };
    return names;
}

std::optional<FilterField::Kind> FilterFields::fieldNamed(QStringView name)
{
    static constexpr Kind kinds[] = {Kind::Name,  Kind::Class, Kind::Inheritance, Kind::Bundle,
                                     Kind::State, Kind::Path,  Kind::Plane};
    const qsizetype index = names().indexOf(name);
    return index < 0 ? std::nullopt : std::optional(kinds[index]);
}

const QStringList &FilterFields::stateWords()
{
    static const QStringList words{
        QStringLiteral("registered"), QStringLiteral("matched"), QStringLiteral("active"),
        QStringLiteral("busy"),       QStringLiteral("new"),     QStringLiteral("terminated"),
        QStringLiteral("error"),      QStringLiteral("warning"),
    };
    return words;
}

bool FilterFields::any(const TavRegistryEntry &entry, Kind kind, const Predicate &predicate)
{
    const QStringList &classes = entry.inheritance();
    switch (kind) {
    case Kind::Name:
        return anyName(entry, [&](const QString &name, const QString &location) {
            return test(predicate, name) ||
                   (!location.isNull() && test(predicate, name + u'@' + location));
        });
    case Kind::Class:
        return !classes.isEmpty() && test(predicate, classes.constFirst());
    case Kind::Inheritance:
        return std::any_of(classes.begin(), classes.end(),
                           [&](const QString &name) { return test(predicate, name); });
    case Kind::Bundle:
        return test(predicate, entry.bundleID());
    case Kind::State:
        return anyState(entry, predicate);
    case Kind::Path:
        if (entry.facts().kernelPath.size() > 0 && test(predicate, entry.kernelPath()))
            return true;
        return anyPlane(
            entry, [&](const QString &plane) { return anyPathInPlane(entry, plane, predicate); });
    case Kind::Plane:
        return anyPlane(entry, [&](const QString &plane) { return test(predicate, plane); });
    case Kind::Property:
        break;
    }
    return false;
}

// Snapshots of earlier versions have no kernel paths. The kernel's name of a platform device is
// either "name.location" or "location.name"; that of others is the name or the location.
bool FilterFields::isNamed(const TavRegistryEntry &entry, QStringView name)
{
    if (EntryLocator::kernelName(entry) == name)
        return true;
    return anyName(entry, [name](const QString &own, const QString &location) {
        if (own == name || location == name)
            return true;
        return !location.isNull() && name.size() == own.size() + location.size() + 1 &&
               (name == QString(own + u'@' + location) || name == QString(own + u'.' + location) ||
                name == QString(location + u'.' + own));
    });
}
