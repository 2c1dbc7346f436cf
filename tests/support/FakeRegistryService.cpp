// SPDX-License-Identifier: Apache-2.0
#include "tests/support/FakeRegistryService.h"

#include <QTimer>
#include <cstring>

namespace {
// The upper bits of a handle distinguish handles of one object.
constexpr int nodeBits = 24;
constexpr quint32 nodeMask = (1U << nodeBits) - 1;
constexpr quint32 aliasMask = 0xff;

quint32 nodeOf(RegistryObject object)
{
    return object & nodeMask;
}

void copyText(const QByteArray &text, RegistryName &buffer)
{
    const auto length = std::min(static_cast<std::size_t>(text.size()), buffer.size() - 1);
    std::memcpy(buffer.data(), text.constData(), length);
    buffer[length] = '\0';
}
} // namespace

FakeRegistry::Object *FakeRegistryService::held(RegistryObject object)
{
    const Node node = nodeOf(object);
    if (node == 0)
        return nullptr;
    if (exists(node) && at(node).handles > 0)
        return &at(node);
    ++misuses_;
    return nullptr;
}

FakeRegistry::Object *FakeRegistryService::heldWithout(Failure failure, RegistryObject object)
{
    Object *const found = held(object);
    return found && !found->failures.testFlag(failure) ? found : nullptr;
}

RegistryObject FakeRegistryService::handOut(Node node)
{
    if (node == 0)
        return 0;
    ++at(node).handles;
    ++openHandles_;
    if (!distinctHandles_)
        return node;
    lastAlias_ = (lastAlias_ + 1) & aliasMask;
    return node | lastAlias_ << nodeBits;
}

void FakeRegistryService::retain(RegistryObject object)
{
    if (Object *const found = held(object)) {
        ++found->handles;
        ++openHandles_;
    }
}

void FakeRegistryService::release(RegistryObject object)
{
    if (Object *const found = held(object)) {
        --found->handles;
        --openHandles_;
    }
}

bool FakeRegistryService::prepareObject(RegistryObject object)
{
    if (held(object))
        preparedObjects_.push_back(nodeOf(object));
    return true;
}

bool FakeRegistryService::mayReadOnRequest(RegistryObject object, const QString &attribute)
{
    return held(object) && std::find(offered_.begin(), offered_.end(),
                                     std::pair(nodeOf(object), attribute)) != offered_.end();
}

void FakeRegistryService::readOnRequest(RegistryObject object, const QString &attribute,
                                        std::function<void()> ready)
{
    askedFor_.emplace_back(nodeOf(object), attribute);
    ready_.push_back(std::move(ready));
}

void FakeRegistryService::sample(const ObjectSample::Request &request,
                                 std::function<void(const ObjectSample &)> ready)
{
    ++samples_;
    ObjectSample sample;
    if (const Object *const object = withKernelPath(request.kernelPath)) {
        const auto members = object->properties.members();
        sample.isThere = true;
        sample.members.assign(members.begin(), members.end());
    }
    QTimer::singleShot(0, &samplesReady_, [sample, ready = std::move(ready)] { ready(sample); });
}

void FakeRegistryService::answerReading(const RegistryValue &properties)
{
    const auto first =
        std::find_if(ready_.begin(), ready_.end(), [](const auto &ready) { return !!ready; });
    setProperties(askedFor_.at(static_cast<std::size_t>(first - ready_.begin())).first, properties);
    std::exchange(*first, nullptr)();
}

RegistryObject FakeRegistryService::entryFromPath(const QString &path)
{
    const QByteArray plane = path.section(u':', 0, 0).toLatin1();
    if (!exists(root()) || inPlane(at(root()), plane).children.empty())
        return 0;
    Node node = inPlane(at(root()), plane).children.front();
    for (const QString &name : path.section(u':', 1).split(u'/', Qt::SkipEmptyParts)) {
        const auto &children = inPlane(at(node), plane).children;
        const auto next = std::find_if(children.begin(), children.end(), [&](Node child) {
            return nameIn(at(child), plane) == name.toUtf8();
        });
        if (next == children.end())
            return 0;
        node = *next;
    }
    return handOut(node);
}

RegistryStatus FakeRegistryService::childIterator(RegistryObject object, const char *plane,
                                                  RegistryIterator &iterator)
{
    if (!heldWithout(ChildIteratorFails, object))
        return RegistryStatus::Failed;
    iterator = ++lastIterator_;
    iterators_.insert(iterator, {nodeOf(object), plane});
    return RegistryStatus::Success;
}

RegistryObject FakeRegistryService::iteratorNext(RegistryIterator iterator)
{
    if (NotificationPorts::isIterator(iterator))
        return ports().next(iterator);
    const auto position = iterators_.find(iterator);
    if (position == iterators_.end()) {
        ++misuses_;
        return 0;
    }
    const auto &children = inPlane(at(position->node), position->plane).children;
    return position->next < children.size() ? handOut(children[position->next++]) : 0;
}

void FakeRegistryService::releaseIterator(RegistryIterator iterator)
{
    if (NotificationPorts::isIterator(iterator))
        return ports().releaseIterator(iterator);
    misuses_ += !iterators_.remove(iterator);
}

RegistryStatus FakeRegistryService::nameInPlane(RegistryObject object, const char *plane,
                                                RegistryName &name)
{
    const Object *const found = heldWithout(plane ? NameInPlaneFails : NameFails, object);
    if (!found)
        return RegistryStatus::Failed;
    copyText(nameIn(*found, plane), name);
    return RegistryStatus::Success;
}

RegistryStatus FakeRegistryService::locationInPlane(RegistryObject object, const char *plane,
                                                    RegistryName &location)
{
    const Object *const found = heldWithout(plane ? LocationInPlaneFails : LocationFails, object);
    if (!found)
        return RegistryStatus::Failed;
    const QByteArray &text = locationIn(*found, plane);
    if (text.isNull())
        return RegistryStatus::NotFound;
    copyText(text, location);
    return RegistryStatus::Success;
}

QString FakeRegistryService::copyClassName(RegistryObject object)
{
    const Object *const found = heldWithout(ClassNameFails, object);
    return found ? found->className : QString();
}

bool FakeRegistryService::conformsTo(RegistryObject object, const QString &className)
{
    const Object *const found = held(object);
    if (!found)
        return false;
    constexpr int deepest = 100; // a script may create a cycle
    QString ancestor = found->className;
    for (int depth = 0; depth < deepest && ancestor != className; ++depth)
        ancestor = classNamed(ancestor).superclass;
    return ancestor == className;
}

RegistryStatus FakeRegistryService::entryID(RegistryObject object, quint64 &id)
{
    const Object *const found = heldWithout(EntryIDFails, object);
    if (!found || !hasEntryIDs_)
        return found ? RegistryStatus::Unsupported : RegistryStatus::Failed;
    id = found->entryID;
    return RegistryStatus::Success;
}

bool FakeRegistryService::objectsEqual(RegistryObject a, RegistryObject b)
{
    return nodeOf(a) == nodeOf(b);
}

RegistryValue FakeRegistryService::copyProperty(RegistryObject object, const QString &key)
{
    const Object *const found = heldWithout(PropertiesFail, object);
    return found ? found->properties.member(key) : RegistryValue();
}

quint32 FakeRegistryService::retainCount(RegistryObject object)
{
    const Object *const found = held(object);
    return found ? found->retainCount : 0;
}
