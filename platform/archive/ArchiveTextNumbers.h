#pragma once

#include <QHash>
#include <vector>

// Gives the strings of an archive numbers that are the same exactly for equal texts. Each text is
// looked at once, however often it is asked about: a small file can name a long one over and over.
class ArchiveTextNumbers
{
public:
    // Of the text with this index among the strings, where it stays.
    quint64 number(quint64 index, QStringView text);

private:
    std::vector<quint64> numbers_; // by index; 0: not asked yet
    QHash<QStringView, quint64> byText_;
};
