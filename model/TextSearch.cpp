#include "model/TextSearch.h"

TextSearch::TextSearch(const QString &text, bool isSubstring)
    : text_(text)
    , matcher_(text, Qt::CaseInsensitive)
    , length_(text.size())
    , isSubstring_(isSubstring)
{}
