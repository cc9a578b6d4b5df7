// SPDX-License-Identifier: GPL-3.0-or-later
#include "language/navigation.h"

#include "platform/textbuffer.h"
#include "shell/document.h"
#include "shell/editorcontext.h"
#include "shell/splitpath.h"

#include <algorithm>
#include <QScopeGuard>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

namespace
{

QString EntryCaption(const NavigationFile &file)
{
    return u'&' + QString(file.displayName).replace(u"&"_s, u"&&"_s);
}

} // namespace

NavigationFile Navigation::Item(int position) const
{
    return IsInList(position) ? m_items[size_t(position - 1)] : NavigationFile();
}

bool Navigation::go(int delta)
{
    const int before = m_current;
    m_current += delta;
    if (!IsInList(m_current))
        return false;
    const NavigationFile target = currentItem();
    m_navigating = true;
    const auto ended = qScopeGuard([this, before] {
        // navAfterOpen has not come.
        if (m_navigating)
            m_current = before;
        m_navigating = false;
    });
    m_editor.operations.OpenFile(target.filename, OpenOrigin::History);
    if (m_navigating)
        return false;
    m_editor.text.SetSelection(target.selStart, target.selEnd);
    return true;
}

const NavigationFile &Navigation::add(const NavigationFile &item)
{
    m_items.resize(size_t(std::clamp(m_current, 0, Length())));
    std::erase_if(m_items, [&](const NavigationFile &known) {
        return known.filename.compare(item.filename, Qt::CaseInsensitive) == 0;
    });
    m_items.push_back(item);
    m_current = Length();
    return m_items.back();
}

void Navigation::navBeforeOpen()
{
    if (m_navigating || !IsInList(m_current))
        return;
    NavigationFile &left = m_items[size_t(m_current - 1)];
    const TextSpan selection = m_editor.text.Selection();
    left.selStart = qint32(selection.start);
    left.selEnd = qint32(selection.end);
}

void Navigation::navAfterOpen()
{
    if (m_navigating) {
        m_navigating = false;
        return;
    }
    const QString &file = m_editor.document.CurrentFile;
    add({.filename = file, .displayName = BareFileName(file)});
}

NavigationButton BackButton(const Navigation &navigation)
{
    NavigationButton button{.enabled = navigation.canGoBack()};
    if (!button.enabled)
        return button;
    button.tooltip = u"Back to "_s + navigation.backItem().displayName;
    for (int position = navigation.backCount(); position >= 1; --position)
        button.captions.append(EntryCaption(navigation.Item(position)));
    return button;
}

NavigationButton NextButton(const Navigation &navigation)
{
    NavigationButton button{.enabled = navigation.canGoNext()};
    if (!button.enabled)
        return button;
    button.tooltip = u"Go to "_s + navigation.nextItem().displayName;
    const int current = navigation.backCount() + 1;
    for (int step = 1; step <= navigation.nextCount(); ++step)
        button.captions.append(EntryCaption(navigation.Item(current + step)));
    return button;
}

} // namespace zelvane
