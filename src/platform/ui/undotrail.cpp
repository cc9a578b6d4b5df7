// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/ui/undotrail.h"

namespace zelvane
{

void UndoSteps::Push(const UndoStep &step)
{
    m_steps.resize(m_done);
    m_steps.push_back(step);
    ++m_done;
}

void UndoSteps::Clear()
{
    m_steps.clear();
    m_done = 0;
}

void UndoSteps::SetAfter(const CaretSpan &after)
{
    if (m_done > 0)
        m_steps[m_done - 1].after = after;
}

void UndoSteps::Undone()
{
    if (m_done > 0)
        --m_done;
}

void UndoSteps::Redone()
{
    if (m_done < m_steps.size())
        ++m_done;
}

const UndoStep *UndoSteps::NextUndo() const
{
    return m_done > 0 ? &m_steps[m_done - 1] : nullptr;
}

const UndoStep *UndoSteps::NextRedo() const
{
    return m_done < m_steps.size() ? &m_steps[m_done] : nullptr;
}

void StyleStack::Begin()
{
    m_stretches.push_back(m_runs.size());
}

void StyleStack::Add(qsizetype count, char style)
{
    if (m_runs.size() > m_stretches.back() && m_runs.back().style == style)
        m_runs.back().length += count;
    else
        m_runs.push_back({count, style});
}

void StyleStack::Drop()
{
    m_runs.resize(m_stretches.back(), Run{0, 0});
    m_stretches.pop_back();
}

void StyleStack::PushEach(QByteArrayView styles)
{
    Begin();
    try {
        for (qsizetype i = 0; i < styles.size();) {
            const qsizetype first = i;
            while (++i < styles.size() && styles[i] == styles[first]) {
            }
            Add(i - first, styles[first]);
        }
    } catch (...) {
        Drop();
        throw;
    }
}

QByteArray StyleStack::Pop(qsizetype length)
{
    if (m_stretches.empty())
        return {};
    QByteArray styles;
    styles.reserve(length);
    for (size_t run = m_stretches.back(); run < m_runs.size(); ++run)
        styles.append(m_runs[run].length, m_runs[run].style);
    Drop();
    return styles.size() == length ? styles : QByteArray();
}

void StyleStack::Clear()
{
    m_runs = {};
    m_stretches = {};
}

} // namespace zelvane
