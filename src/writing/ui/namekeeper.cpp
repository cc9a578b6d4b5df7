// SPDX-License-Identifier: GPL-3.0-or-later
#include "writing/ui/namekeeper.h"

#include "platform/textbuffer.h"
#include "platform/ui/textcontrol.h"
#include "shell/document.h"
#include "shell/editorcontext.h"
#include "shell/ui/windowcontext.h"
#include "writing/ui/scannedtext.h"
#include "writing/ui/writingaid.h"

#include <algorithm>
#include <chrono>
#include <new>
#include <QMetaObject>
#include <QString>
#include <utility>

namespace zelvane
{

namespace
{

constexpr std::chrono::milliseconds Pause(300);

/// Where a place goes when the text before it, or around it, is edited.
qsizetype Moved(qsizetype place, const TextEdit &edit)
{
    if (place <= edit.offset)
        return place;
    return std::max(place - edit.removed, edit.offset) + edit.added;
}

} // namespace

NameKeeper::NameKeeper(TextControl &text, const DocumentRecord &document, ScannedText &scanned)
    : m_text(text), m_document(document), m_scanned(scanned)
{
    m_pause.setSingleShot(true);
    m_pause.setInterval(Pause);
    connect(&m_pause, &QTimer::timeout, this, &NameKeeper::Read);
    connect(&text, &TextControl::edited, this, &NameKeeper::FollowEdit);
    m_pause.start();
}

bool NameKeeper::IsUnified() const
{
    return m_document.DocumentKind == FileKind::Unified;
}

const TextNames &NameKeeper::Names()
{
    if ((m_behind || m_unified != IsUnified()) && m_text.Length() <= QuickLength) {
        m_unified = IsUnified();
        m_names = FindNames(m_text.Text(), m_unified);
        m_behind = false;
    }
    return m_names;
}

void NameKeeper::FollowEdit(const TextEdit &edit)
{
    m_behind = true;
    m_pause.start();
    if (m_reading)
        m_since.push_back(edit);
    const auto follow = [&edit](TextSpan &span) {
        span.start = Moved(span.start, edit);
        span.end = Moved(span.end, edit);
    };
    // What lies before the edit stays: mostly all or nothing of it has to be looked at.
    for (std::vector<TextSpan> *spans : {&m_names.blockComments, &m_names.bracedStrings}) {
        const auto first =
            std::lower_bound(spans->begin(), spans->end(), edit.offset,
                             [](const TextSpan &span, qsizetype at) { return span.end <= at; });
        std::for_each(first, spans->end(), follow);
    }
    follow(m_names.orchestra);
    follow(m_names.score);
}

void NameKeeper::Read()
{
    if (!m_behind || m_reading || m_text.Length() <= QuickLength)
        return;
    QString text;
    try {
        text = m_scanned.Text();
    } catch (const std::bad_alloc &) {
        return; // an aid goes without; the next pause may find memory
    }
    m_reading = true;
    m_since.clear();
    m_unified = IsUnified();
    const auto names = std::make_shared<TextNames>();
    m_worker.Do([this, names, text = std::move(text), unified = m_unified] {
        try {
            *names = FindNames(text, unified);
        } catch (const std::bad_alloc &) {
            *names = {};
        }
        QMetaObject::invokeMethod(
            this, [this, names] { Take(std::move(*names)); }, Qt::QueuedConnection);
    });
}

void NameKeeper::Take(TextNames names)
{
    m_names = std::move(names);
    m_reading = false;
    m_behind = false;
    for (const TextEdit &edit : std::exchange(m_since, {}))
        FollowEdit(edit);
    Q_EMIT found();
}

std::shared_ptr<NameKeeper> SharedNames(const WritingContext &context)
{
    std::shared_ptr<NameKeeper> names = context.names.lock();
    if (!names) {
        names = std::make_shared<NameKeeper>(context.window.text, context.window.editor.document,
                                             context.scanned);
        context.names = names;
    }
    return names;
}

} // namespace zelvane
