// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/stringbuffer.h"

#include "platform/keptclasses.h"

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace zelvane::test
{

namespace
{

QString OneFeed(QString text)
{
    return text.replace(u"\r\n"_s, u"\n"_s).replace(u'\r', u'\n');
}

} // namespace

QString StringBuffer::TextRange(qsizetype start, qsizetype end) const
{
    return text.mid(start, end - start);
}

void StringBuffer::SetText(const QString &newText)
{
    text = OneFeed(newText);
    styles = QByteArray(text.size(), char(StyleClass::Text));
    selection = {};
    ++undoSteps;
}

void StringBuffer::SetSelection(qsizetype start, qsizetype end)
{
    if (end < 0)
        end = text.size();
    start = std::clamp<qsizetype>(start, 0, text.size());
    end = std::clamp<qsizetype>(end, 0, text.size());
    selection = {std::min(start, end), std::max(start, end)};
}

QString StringBuffer::SelectedText() const
{
    return TextRange(selection.start, selection.end);
}

void StringBuffer::ReplaceSelection(const QString &newText)
{
    const QString inserted = OneFeed(newText);
    const qsizetype start = selection.start;
    ReplaceRange(start, selection.end, inserted);
    selection = {start + inserted.size(), start + inserted.size()};
}

void StringBuffer::ReplaceRange(qsizetype start, qsizetype end, const QString &newText)
{
    const QString inserted = OneFeed(newText);
    styles.resize(text.size(), char(StyleClass::Text));
    const char before = start > 0 ? styles[start - 1] : char(StyleClass::Text);
    QByteArray classes;
    if (start < end && !inserted.isEmpty())
        classes = KeptClasses(QStringView(text).sliced(start, end - start),
                              QByteArrayView(styles).sliced(start, end - start), inserted, before);
    if (classes.isEmpty())
        classes = QByteArray(inserted.size(), before);
    text.replace(start, end - start, inserted);
    styles.replace(start, end - start, classes);
    SetSelection(selection.start, selection.end);
    ++undoSteps;
}

void StringBuffer::ReplaceEach(const std::vector<qint32> &starts, qsizetype length, const QString &newText)
{
    std::vector<TextReplacement> replacements;
    for (const qint32 start : starts)
        replacements.push_back({{start, start + length}, newText});
    ReplaceEach(replacements);
}

void StringBuffer::ReplaceEach(const std::vector<TextReplacement> &replacements)
{
    if (replacements.empty())
        return;
    const int steps = undoSteps;
    qsizetype shift = 0;
    for (const TextReplacement &one : replacements) {
        // In two steps: a hit keeps nothing of its classes.
        ReplaceRange(one.span.start + shift, one.span.end + shift, {});
        SetSelection(one.span.start + shift, one.span.start + shift);
        ReplaceSelection(one.text);
        shift = selection.end - one.span.end;
    }
    undoSteps = steps + 1;
}

qsizetype StringBuffer::LineCount() const
{
    return text.count(u'\n') + 1;
}

qsizetype StringBuffer::LineOfOffset(qsizetype offset) const
{
    return QStringView(text).first(std::clamp<qsizetype>(offset, 0, text.size())).count(u'\n');
}

qsizetype StringBuffer::LineStart(qsizetype line) const
{
    qsizetype start = 0;
    for (; line > 0; --line) {
        const qsizetype feed = text.indexOf(u'\n', start);
        if (feed < 0)
            return text.size();
        start = feed + 1;
    }
    return start;
}

qsizetype StringBuffer::LineEnd(qsizetype line) const
{
    const qsizetype feed = text.indexOf(u'\n', LineStart(line));
    return feed < 0 ? text.size() : feed;
}

void StringBuffer::ApplyStyles(qsizetype start, qsizetype end, const StyleRuns &runs)
{
    styles.resize(text.size(), char(StyleClass::Text));
    std::fill(styles.begin() + start, styles.begin() + end, char(StyleClass::Text));
    for (const StyleRun &run : runs)
        std::fill_n(styles.begin() + run.start, run.length, char(run.style));
}

} // namespace zelvane::test
