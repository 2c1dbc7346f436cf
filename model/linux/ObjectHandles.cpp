// SPDX-License-Identifier: Apache-2.0
#include "model/linux/ObjectHandles.h"

std::unique_ptr<RegistryGraph> ObjectHandles::setGraph(std::unique_ptr<RegistryGraph> graph,
                                                       std::vector<RegistryObject> &vanished)
{
    std::unique_ptr<RegistryGraph> previous = std::exchange(graph_, std::move(graph));
    byIndex_.assign(static_cast<std::size_t>(graph_->count()), 0);
    for (std::size_t i = 0; i < held_.size(); ++i) {
        Held &its = held_[i];
        if (its.references == 0)
            continue;
        const auto handle = static_cast<RegistryObject>(i + 1);
        const HostObject &known = its.apart ? *its.apart : previous->at(its.index);
        const int index = graph_->withID(known.id);
        if (index != HostObject::none) {
            apartByID_.erase(known.id);
            its.apart.reset();
            byIndex_[static_cast<std::size_t>(index)] = handle;
        } else if (!its.apart) {
            its.apart = std::make_unique<HostObject>(known);
            apartByID_.emplace(known.id, handle);
            vanished.push_back(handle);
        }
        its.index = index;
    }
    return previous;
}

RegistryObject ObjectHandles::newHandle()
{
    if (free_.empty()) {
        held_.emplace_back();
        return static_cast<RegistryObject>(held_.size());
    }
    const RegistryObject handle = free_.back();
    free_.pop_back();
    return handle;
}

RegistryObject ObjectHandles::hold(int index)
{
    RegistryObject &handle = byIndex_[static_cast<std::size_t>(index)];
    if (handle == 0) {
        handle = newHandle();
        held_[handle - 1].index = index;
    }
    ++held_[handle - 1].references;
    return handle;
}

RegistryObject ObjectHandles::hold(HostObject facts)
{
    const int index = graph_ ? graph_->withID(facts.id) : HostObject::none;
    if (index != HostObject::none)
        return hold(index);
    const auto [known, isNew] = apartByID_.try_emplace(facts.id, 0);
    if (isNew) {
        known->second = newHandle();
        held_[known->second - 1].apart = std::make_unique<HostObject>(std::move(facts));
    }
    ++held_[known->second - 1].references;
    return known->second;
}

void ObjectHandles::retain(RegistryObject object)
{
    if (isValid(object))
        ++held_[object - 1].references;
}

void ObjectHandles::release(RegistryObject object)
{
    if (!isValid(object) || --held_[object - 1].references > 0)
        return;
    const Held its = std::exchange(held_[object - 1], {});
    if (its.apart)
        apartByID_.erase(its.apart->id);
    else
        byIndex_[static_cast<std::size_t>(its.index)] = 0;
    free_.push_back(object);
}

const HostObject *ObjectHandles::find(RegistryObject object) const
{
    if (!isValid(object))
        return nullptr;
    const Held &its = held_[object - 1];
    return its.apart ? its.apart.get() : &graph_->at(its.index);
}

int ObjectHandles::indexOf(RegistryObject object) const
{
    return isValid(object) ? held_[object - 1].index : HostObject::none;
}
