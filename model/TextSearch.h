#pragma once

#include <QString>
#include <QStringMatcher>

// One text looked for in many, without regard to case: within them, or as the whole of them. An
// empty text is found nowhere.
class TextSearch
{
public:
    TextSearch(const QString &text, bool isSubstring);

    bool matches(QStringView candidate) const
    {
        if (candidate.size() < length_ || length_ == 0)
            return false;
        return isSubstring_ ? matcher_.indexIn(candidate) >= 0
                            : candidate.compare(text_, Qt::CaseInsensitive) == 0;
    }

private:
    QString text_;
    QStringMatcher matcher_;
    qsizetype length_;
    bool isSubstring_;
};
