// SPDX-License-Identifier: GPL-3.0-or-later
#include "writing/ui/livecolours.h"

#include "language/languagekeys.h"
#include "platform/textbuffer.h"
#include "platform/ui/textcontrol.h"
#include "shell/editorcontext.h"
#include "writing/ui/scannedtext.h"

#include <algorithm>
#include <new>
#include <optional>
#include <QElapsedTimer>
#include <QString>
#include <QWidget>
#include <utility>
#include <vector>

namespace zelvane
{

namespace
{

constexpr int ShortestPause = 40; ///< milliseconds
constexpr int LongestPause = 600;
constexpr int Rest = 15; ///< how many times as long as a scan the pause before it is

} // namespace

LiveColours::LiveColours(const WritingContext &context)
    : m_editor(context.window.editor),
      m_text(context.window.text),
      m_scanned(context.scanned),
      m_opcodes(context.opcodes)
{
    m_pause.setSingleShot(true);
    m_pause.setInterval(ShortestPause);
    connect(&m_pause, &QTimer::timeout, this, &LiveColours::ColourNow);
    connect(&m_text, &TextControl::edited, this, [this](const TextEdit &edit) {
        m_known.Edited(edit);
        Wait();
    });
    connect(&m_text, &TextControl::textLoaded, this, [this] {
        m_fresh = true;
        Wait();
    });
    // Under another name the text may be of another kind.
    connect(context.window.window, &QWidget::windowTitleChanged, this, [this] {
        if (m_editor.document.DocumentKind != m_kind)
            Wait();
    });
    Wait();
}

void LiveColours::SettingsApplied()
{
    Wait();
}

void LiveColours::ColourNow()
{
    m_pause.stop();
    QElapsedTimer clock;
    clock.start();
    try {
        Colour();
    } catch (const std::bad_alloc &) {
        m_known.Forget(); // the text is there all the same, in other colours
    }
    m_pause.setInterval(std::clamp(int(clock.elapsed()) * Rest, ShortestPause, LongestPause));
}

void LiveColours::Colour()
{
    m_kind = m_editor.document.DocumentKind;
    if (m_editor.document.Loading || !m_editor.settings.Flag(Keys::SyntaxHighlight))
        return;
    const QString &text = m_scanned.Text();
    std::optional<StyleRuns> wanted = RefreshedColours(text, m_kind, m_opcodes);
    if (!wanted)
        return;
    if (m_text.Colourings() != m_colourings)
        m_known.Forget(); // somebody else has coloured the text
    const TextSpan unknown = m_known.Unknown(text.size());
    const StyleRuns edited = m_text.RunsBetween(unknown.start, unknown.end);
    for (const ColourChange &change : m_known.Changes(edited, *wanted, text.size()))
        m_text.ApplyStyles(change.span.start, change.span.end, change.runs);
    // The first colouring is what gives plain text its own look.
    if (std::exchange(m_fresh, false))
        m_text.ApplyStyles(0, 0, {});
    m_known.Know(*std::move(wanted));
    m_colourings = m_text.Colourings();
}

} // namespace zelvane
