#include "store/PlaneLinks.h"

#include <span>

// Takes away entries that no other leads to any more, with their links. Links that are left then
// are part of a cycle or lead to one.
class PlaneLinks::Untangler
{
public:
    explicit Untangler(std::size_t entryCount)
        : start_(entryCount)
        , leadingTo_(entryCount)
    {}

    bool hasCycle(const Lists &lists)
    {
        std::size_t links = 0;
        forEach(lists, [&](std::size_t position) {
            start_[lists[position]] = position + 1;
            for (const quint32 relative : relatives(lists, position))
                ++leadingTo_[relative];
            links += lists[position + 1];
        });
        std::vector<quint32> free;
        forEach(lists, [&](std::size_t position) {
            if (leadingTo_[lists[position]] == 0)
                free.push_back(lists[position]);
        });
        while (!free.empty()) {
            const std::size_t start = start_[free.back()];
            free.pop_back();
            if (start == 0)
                continue;
            for (const quint32 relative : relatives(lists, start - 1)) {
                --links;
                if (--leadingTo_[relative] == 0)
                    free.push_back(relative);
            }
        }
        forEach(lists, [&](std::size_t position) { start_[lists[position]] = 0; });
        return links > 0; // the counts of leadingTo_ are all 0 again only if not
    }

private:
    static std::span<const quint32> relatives(const Lists &lists, std::size_t position)
    {
        return {lists.data() + position + 2, lists[position + 1]};
    }
    template<class Action>
    static void forEach(const Lists &lists, Action action)
    {
        for (std::size_t position = 0; position < lists.size(); position += 2 + lists[position + 1])
            action(position);
    }

    std::vector<std::size_t> start_; // by entry: 1 + where its list is; 0: none in this plane
    std::vector<quint32> leadingTo_; // by entry: links that lead to it
};

void PlaneLinks::add(const QString &plane, quint32 entry, const std::vector<quint32> &relatives)
{
    Lists &lists = planes_[plane];
    lists.push_back(entry);
    lists.push_back(static_cast<quint32>(relatives.size()));
    lists.insert(lists.end(), relatives.begin(), relatives.end());
}

bool PlaneLinks::haveCycle(std::size_t entryCount) const
{
    Untangler untangler(entryCount);
    return std::any_of(planes_.begin(), planes_.end(),
                       [&](const Lists &lists) { return untangler.hasCycle(lists); });
}
