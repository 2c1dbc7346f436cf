// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "display/EntryTextAttributes.h"
#include "explorer/find/FoundEntryPaths.h"
#include "model/FindOptions.h"
#include "model/ShownValueTest.h"
#include "store/filter/FilterExpression.h"

#include <QHash>

class TavDataStore;

// What a search asks for: a text, or the filter expression that the text is.
struct FindQuery
{
    QString text = {}; // null: nothing
    std::optional<FilterExpression> filter = {};
};

// What a window searches for, what was found, and the order in which steps visit it. Without a
// search there is no set; the entries in it are kept while it lasts.
class FindSession
{
public:
    using Path = FoundEntryPaths::Path;
    struct Result
    {
        EntrySet found;
        QHash<QString, EntrySet> parentsInPlanes;
        bool isComplete = true; // false: an expression took too long
    };

    explicit FindSession(std::shared_ptr<TavDataStore> dataStore);

    FindOptions options() const { return findOptions_; }
    void setOptions(FindOptions options) { findOptions_ = options; }
    bool isQuery(const FindQuery &query) const; // one that searches for something
    // What a search needs of the user's formats; on the main thread.
    ShownValueTest shownValues(const FindQuery &query) const;
    // In any thread; nothing for what is no query.
    Result run(const FindQuery &query, const ShownValueTest &shownValues) const;

    void begin(FindQuery query, Result result);
    void end();
    const FindQuery &query() const { return query_; }
    const QString &findQuery() const { return query_.text; } // null: no search
    const std::optional<EntrySet> &foundObjects() const { return foundObjects_; }
    FindState findState(const TavRegistryEntry &entry, const QString &plane) const;

    // From a path, in the plane that is shown or, without one, through all planes. Unless it must
    // advance, the path itself may be the answer.
    Path nextPath(const TavRegistryEntryPath &start, const std::optional<QString> &plane,
                  bool mustAdvance) const;
    Path prevPath(const TavRegistryEntryPath &start, const std::optional<QString> &plane,
                  bool mustAdvance) const;
    // With the planes to wrap through, any match is a next and a previous one.
    bool hasPaths() const { return foundEntryPaths_ && !foundEntryPaths_->isEmpty(); }

private:
    std::shared_ptr<TavDataStore> dataStore_;
    FindOptions findOptions_ = FindOption::Name;
    FindQuery query_;
    std::optional<EntrySet> foundObjects_;
    QHash<QString, EntrySet> parentsOfFoundObjectsInPlanes_;
    std::unique_ptr<FoundEntryPaths> foundEntryPaths_; // null: no search
};
