#include "editor/line_marks.h"

#include <QTextBlock>
#include <QTextDocument>

namespace {

struct MarkData : QTextBlockUserData
{
    int kinds = 0;
};

} // namespace

bool LineMarks::has(const QTextBlock &block, Kind kind)
{
    const auto *data = static_cast<const MarkData *>(block.userData());
    return data && (data->kinds & int(kind));
}

void LineMarks::set(QTextBlock block, Kind kind, bool isSet)
{
    if (has(block, kind) == isSet)
        return;
    auto *data = static_cast<MarkData *>(block.userData());
    if (!data) {
        data = new MarkData;
        block.setUserData(data);
    }
    data->kinds ^= int(kind);
}

void LineMarks::move(QTextBlock from, QTextBlock to)
{
    for (const Kind kind : {Kind::Breakpoint, Kind::Bookmark}) {
        set(to, kind, has(from, kind));
        set(from, kind, false);
    }
}

QSet<int> LineMarks::lines(const QTextDocument &document, Kind kind)
{
    QSet<int> lines;
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        if (has(block, kind))
            lines.insert(block.blockNumber() + 1);
    }
    return lines;
}

void LineMarks::setLines(const QTextDocument &document, Kind kind, const QSet<int> &lines)
{
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next())
        set(block, kind, lines.contains(block.blockNumber() + 1));
}
