#include "host/projectfiles/textedits.h"

#include <algorithm>

QByteArray TextEdits::applied(const QByteArray& original) const
{
    std::vector<Edit> edits = m_edits;
    std::stable_sort(edits.begin(), edits.end(), [](const Edit& a, const Edit& b) { return a.begin < b.begin; });
    QByteArray text;
    text.reserve(original.size() + 64 * static_cast<int>(edits.size()));
    int done = 0;
    for (const Edit& edit : edits) {
        text.append(original.constData() + done, edit.begin - done);
        text.append(edit.text);
        done = edit.end;
    }
    return text.append(original.constData() + done, original.size() - done);
}
