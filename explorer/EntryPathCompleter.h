#pragma once

#include <QCompleter>
#include <memory>

class QLineEdit;
class QStringListModel;
class TavDataStore;

// Offers planes, and then the names below what has been typed, in a field for registry paths.
class EntryPathCompleter : public QCompleter
{
    Q_OBJECT
public:
    // The field owns it.
    EntryPathCompleter(QLineEdit &field, std::shared_ptr<const TavDataStore> dataStore);

    // What a path that begins like this may go on as.
    QStringList candidates(const QString &text) const;

private:
    void update(const QString &text);

    std::shared_ptr<const TavDataStore> dataStore_;
    QStringListModel *model_;
    QString begin_; // of the paths in the model
};
