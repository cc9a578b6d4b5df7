// SPDX-License-Identifier: GPL-3.0-or-later
#include "writing/ui/scannedtext.h"

#include "platform/ui/textcontrol.h"
#include "shell/editorcontext.h"

#include <QMetaMethod>

namespace zelvane
{

namespace
{

/// In milliseconds; a large text takes longer to scan, and waits longer.
int PauseFor(qsizetype length)
{
    return 150 + int(length / 32768);
}

constexpr int HoldTime = 1000; ///< in milliseconds; who has to do with the text in a pause comes within it

} // namespace

ScannedText::ScannedText(const WindowContext &context) : m_context(context)
{
    m_pause.setSingleShot(true);
    m_hold.setSingleShot(true);
    m_hold.setInterval(HoldTime);
    connect(&m_hold, &QTimer::timeout, this, &ScannedText::ForgetText);
    connect(&context.text, &TextControl::edited, this, &ScannedText::ForgetText);
    connect(&context.text, &TextControl::textLoading, this, &ScannedText::ForgetText);
    connect(&context.text, &TextControl::textLoaded, this, &ScannedText::ForgetText);
    connect(&m_pause, &QTimer::timeout, this, &ScannedText::Scan);
    connect(&context.text, &TextControl::textChanged, this, &ScannedText::Wait);
    connect(&context.text, &TextControl::selectionChanged, this, &ScannedText::FollowKind);
    connect(&context.text, &TextControl::textLoaded, this, &ScannedText::Request);
}

const QString &ScannedText::Text()
{
    if (m_text.isNull()) {
        m_text = m_context.text.Text();
        m_hold.start();
    }
    return m_text;
}

void ScannedText::ForgetText()
{
    m_text.clear();
    m_hold.stop();
}

void ScannedText::Wait()
{
    m_pause.start(PauseFor(m_context.text.Length()));
}

void ScannedText::Request()
{
    m_pause.start(0);
}

void ScannedText::FollowKind()
{
    if (m_context.editor.document.DocumentKind != m_kind && !m_pause.isActive())
        Request();
}

void ScannedText::Scan()
{
    static const QMetaMethod signal = QMetaMethod::fromSignal(&ScannedText::scanned);
    if (m_context.editor.document.Loading) {
        Wait();
        return;
    }
    m_kind = m_context.editor.document.DocumentKind;
    if (!isSignalConnected(signal))
        return;
    TextScan scan{.text = Text(), .kind = m_kind, .map = {}};
    scan.map = CodeMap(scan.text, scan.kind);
    Q_EMIT scanned(scan);
}

} // namespace zelvane
