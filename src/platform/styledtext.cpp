// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/styledtext.h"

#include "platform/systemcolour.h"

#include <algorithm>
#include <cstring>
#include <QByteArray>

namespace zelvane
{

StyleRuns CoveringRuns(const StyleRuns &runs, qsizetype length)
{
    QByteArray classes(length, char(StyleClass::Text));
    char *const cells = classes.data();
    for (const StyleRun &run : runs) {
        const qsizetype start = std::clamp<qsizetype>(run.start, 0, length);
        const qsizetype end = std::clamp<qsizetype>(qsizetype(run.start) + run.length, start, length);
        std::memset(cells + start, int(run.style), size_t(end - start));
    }
    StyleRuns covering;
    for (qsizetype start = 0; start < length;) {
        qsizetype end = start + 1;
        while (end < length && cells[end] == cells[start])
            ++end;
        covering.push_back({qint32(start), qint32(end - start), StyleClass(cells[start])});
        start = end;
    }
    return covering;
}

quint32 ColourOnPaper(const StyleFormat &format)
{
    return format.colour & SystemColourBit ? 0 : format.colour & 0xFFFFFF;
}

} // namespace zelvane
