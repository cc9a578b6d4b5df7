// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/ui/textdecorations.h"

#include "platform/ui/scintilla.h"
#include "platform/ui/scintillacolour.h"
#include "platform/ui/systemcolours.h"
#include "platform/ui/textcontrol.h"

#include <algorithm>
#include <QByteArray>
#include <QEvent>
#include <QMetaObject>
#include <QPalette>
#include <QString>
#include <utility>

namespace zelvane
{

namespace
{

using Sci = QsciScintillaBase;

constexpr int FewestDigits = 3; ///< so that the text does not jump while a short piece grows
constexpr int Gap = 4;          ///< pixels beside the numbers
constexpr int BesideText = 6;   ///< pixels, as the text control has them on both sides

constexpr int MarkerNumber(LineMarker marker)
{
    return int(marker) + 1;
}

constexpr int IndicatorNumber(Indicator indicator)
{
    return Sci::INDIC_CONTAINER + int(indicator);
}

/// So much of one colour over another.
QColor Mixed(const QColor &over, const QColor &under, double part)
{
    const auto mix = [part](int one, int other) { return int(other + (one - other) * part + 0.5); };
    return QColor(mix(over.red(), under.red()), mix(over.green(), under.green()),
                  mix(over.blue(), under.blue()));
}

int LevelOf(const FoldLevel &level)
{
    const int depth = std::clamp(level.depth, 0, Sci::SC_FOLDLEVELNUMBERMASK - Sci::SC_FOLDLEVELBASE);
    return (Sci::SC_FOLDLEVELBASE + depth) | (level.header ? Sci::SC_FOLDLEVELHEADERFLAG : 0);
}

/// The stretches cut to a text of this length, in order, those that touch as one.
std::vector<TextSpan> Joined(std::vector<TextSpan> spans, qsizetype length)
{
    std::sort(spans.begin(), spans.end(),
              [](const TextSpan &one, const TextSpan &other) { return one.start < other.start; });
    std::vector<TextSpan> joined;
    for (const TextSpan &span : spans) {
        const qsizetype start = std::max<qsizetype>(span.start, 0);
        const qsizetype end = std::min(span.end, length);
        if (start >= end)
            continue;
        if (!joined.empty() && start <= joined.back().end)
            joined.back().end = std::max(joined.back().end, end);
        else
            joined.push_back({start, end});
    }
    return joined;
}

} // namespace

TextDecorations::TextDecorations(TextControl &text) : m_text(text)
{
    m_text.Send(Sci::SCI_SETMARGINTYPEN, int(TextMargin::Markers), Sci::SC_MARGIN_COLOUR);
    m_text.Send(Sci::SCI_SETMARGINTYPEN, int(TextMargin::Numbers), Sci::SC_MARGIN_NUMBER);
    m_text.Send(Sci::SCI_SETMARGINTYPEN, int(TextMargin::Folds), Sci::SC_MARGIN_SYMBOL);
    int markers = 0;
    for (int marker = 0; marker < LineMarkerCount; ++marker)
        markers |= 1 << MarkerNumber(LineMarker(marker));
    m_text.Send(Sci::SCI_SETMARGINMASKN, int(TextMargin::Markers), markers);
    m_text.Send(Sci::SCI_SETMARGINMASKN, int(TextMargin::Numbers), 0);
    m_text.Send(Sci::SCI_SETMARGINMASKN, int(TextMargin::Folds), qint64(unsigned(Sci::SC_MASK_FOLDERS)));
    for (const TextMargin margin : {TextMargin::Markers, TextMargin::Folds}) {
        m_text.Send(Sci::SCI_SETMARGINSENSITIVEN, int(margin), 1);
        m_text.Send(Sci::SCI_SETMARGINCURSORN, int(margin), Sci::SC_CURSORARROW);
    }
    // What is hidden and gets the caret, or is edited, comes into sight.
    m_text.Send(Sci::SCI_SETAUTOMATICFOLD, Sci::SC_AUTOMATICFOLD_SHOW | Sci::SC_AUTOMATICFOLD_CHANGE);
    ApplyLook();

    connect(&m_text, &TextControl::lookChanged, this, &TextDecorations::ApplyLook);
    connect(&m_text, &TextControl::textChanged, this, [this] {
        FollowLineCount();
        ViewMayHaveChanged();
    });
    connect(&m_text, &TextControl::textLoading, this, &TextDecorations::Load);
    connect(&m_text, &TextControl::textLoaded, this, &TextDecorations::loaded);
    connect(&m_text, &QsciScintillaBase::SCN_MARGINCLICK, this, &TextDecorations::MarginClicked);
    connect(&m_text, &QsciScintillaBase::SCN_UPDATEUI, this, [this](int updated) {
        if (updated & (Sci::SC_UPDATE_CONTENT | Sci::SC_UPDATE_V_SCROLL | Sci::SC_UPDATE_H_SCROLL))
            ViewMayHaveChanged();
    });
    m_text.viewport()->installEventFilter(this);
}

TextDecorations::~TextDecorations()
{
    disconnect(&m_text, nullptr, this, nullptr);
    for (int indicator = 0; indicator < IndicatorCount; ++indicator)
        Clear(Indicator(indicator));
    for (int marker = 0; marker < LineMarkerCount; ++marker)
        ClearMarkers(LineMarker(marker));
    ClearFolds();
    ShowCurrentLine(false);
    for (int margin = 0; margin < TextMarginCount; ++margin)
        ShowMargin(TextMargin(margin), false);
    m_text.Send(Sci::SCI_SETAUTOMATICFOLD, 0);
}

// Stretches

void TextDecorations::Show(Indicator indicator, const std::vector<TextSpan> &spans)
{
    bool &shown = m_shown[size_t(indicator)];
    // Drawn again it would be told as a change of the view, and who answers that by showing would never rest.
    if (shown ? Shown(indicator) == Joined(spans, m_text.Length()) : spans.empty())
        return;
    m_text.Send(Sci::SCI_SETINDICATORCURRENT, IndicatorNumber(indicator));
    if (shown)
        m_text.Send(Sci::SCI_INDICATORCLEARRANGE, 0, m_text.m_map.Bytes());
    shown = !spans.empty();
    for (const TextSpan &span : spans) {
        const qsizetype start = m_text.m_map.ToByte(std::max<qsizetype>(span.start, 0));
        const qsizetype end = m_text.m_map.ToByte(std::max<qsizetype>(span.end, 0));
        if (start < end)
            m_text.Send(Sci::SCI_INDICATORFILLRANGE, start, end - start);
    }
}

std::vector<TextSpan> TextDecorations::Shown(Indicator indicator) const
{
    std::vector<TextSpan> spans;
    const int number = IndicatorNumber(indicator);
    const qsizetype length = m_text.m_map.Bytes();
    for (qsizetype at = 0; at < length;) {
        const qsizetype end = m_text.Send(Sci::SCI_INDICATOREND, number, at);
        if (end <= at) // nothing is marked at all
            break;
        if (m_text.Send(Sci::SCI_INDICATORVALUEAT, number, at))
            spans.push_back({m_text.m_map.ToUnits(at), m_text.m_map.ToUnits(std::min(end, length))});
        at = end;
    }
    return spans;
}

// Margins

void TextDecorations::ShowMargin(TextMargin margin, bool show)
{
    bool &shown = m_margins[size_t(margin)];
    if (shown == show)
        return;
    shown = show;
    // A marker that no margin shows would colour its line.
    ApplySymbols();
    if (margin == TextMargin::Numbers)
        FollowLineCount();
    ApplyWidths();
}

void TextDecorations::FollowLineCount()
{
    if (!IsMarginShown(TextMargin::Numbers))
        return;
    const int digits = std::max(int(QString::number(m_text.LineCount()).size()), FewestDigits);
    if (digits == m_digits)
        return;
    m_digits = digits;
    ApplyWidths();
}

void TextDecorations::ApplyWidths()
{
    const int line = int(m_text.Send(Sci::SCI_TEXTHEIGHT, 0));
    const auto width = [&](TextMargin margin) {
        if (!IsMarginShown(margin))
            return 0;
        if (margin != TextMargin::Numbers)
            return std::clamp(line, 12, 48);
        const QByteArray digits(m_digits, '9');
        return int(m_text.SendBytes(Sci::SCI_TEXTWIDTH, Sci::STYLE_LINENUMBER, digits.constData())) + 2 * Gap;
    };
    bool any = false;
    for (int margin = 0; margin < TextMarginCount; ++margin) {
        const int pixels = width(TextMargin(margin));
        any = any || pixels > 0;
        if (m_text.Send(Sci::SCI_GETMARGINWIDTHN, margin) != pixels)
            m_text.Send(Sci::SCI_SETMARGINWIDTHN, margin, pixels);
    }
    const int left = any ? Gap : BesideText;
    if (m_text.Send(Sci::SCI_GETMARGINLEFT) != left)
        m_text.Send(Sci::SCI_SETMARGINLEFT, 0, left);
}

void TextDecorations::MarginClicked(int position, int modifiers, int margin)
{
    Qt::KeyboardModifiers held;
    held.setFlag(Qt::ShiftModifier, modifiers & Sci::SCMOD_SHIFT);
    held.setFlag(Qt::ControlModifier, modifiers & Sci::SCMOD_CTRL);
    held.setFlag(Qt::AltModifier, modifiers & Sci::SCMOD_ALT);
    Q_EMIT marginClicked(TextMargin(margin), m_text.Send(Sci::SCI_LINEFROMPOSITION, position), held);
}

// Lines

void TextDecorations::SetMarker(LineMarker marker, qsizetype line, bool set)
{
    if (line < 0 || line >= m_text.LineCount() || HasMarker(marker, line) == set)
        return;
    if (marker == LineMarker::Bookmark)
        FoldsHaveChanged();
    m_text.Send(set ? Sci::SCI_MARKERADD : Sci::SCI_MARKERDELETE, line, MarkerNumber(marker));
    // Lines that came together may have it twice.
    while (!set && HasMarker(marker, line))
        m_text.Send(Sci::SCI_MARKERDELETE, line, MarkerNumber(marker));
}

bool TextDecorations::HasMarker(LineMarker marker, qsizetype line) const
{
    return m_text.Send(Sci::SCI_MARKERGET, line) & (1 << MarkerNumber(marker));
}

std::vector<qsizetype> TextDecorations::MarkedLines(LineMarker marker) const
{
    std::vector<qsizetype> lines;
    for (std::optional<qsizetype> line = NextMarked(marker, 0); line; line = NextMarked(marker, *line + 1))
        lines.push_back(*line);
    return lines;
}

std::optional<qsizetype> TextDecorations::NextMarked(LineMarker marker, qsizetype line) const
{
    if (line >= m_text.LineCount())
        return {};
    const long found =
        m_text.Send(Sci::SCI_MARKERNEXT, std::max<qsizetype>(line, 0), 1 << MarkerNumber(marker));
    return found < 0 ? std::optional<qsizetype>() : found;
}

std::optional<qsizetype> TextDecorations::PreviousMarked(LineMarker marker, qsizetype line) const
{
    if (line < 0)
        return {};
    const long found = m_text.Send(Sci::SCI_MARKERPREVIOUS, std::min(line, m_text.LineCount() - 1),
                                   1 << MarkerNumber(marker));
    return found < 0 ? std::optional<qsizetype>() : found;
}

void TextDecorations::ClearMarkers(LineMarker marker)
{
    m_text.Send(Sci::SCI_MARKERDELETEALL, MarkerNumber(marker));
    if (marker == LineMarker::Bookmark)
        FoldsHaveChanged();
}

void TextDecorations::ShowCurrentLine(bool show)
{
    m_currentLine = show;
    m_text.Send(Sci::SCI_SETCARETLINEVISIBLE, show);
    // The room at the right would be left white.
    m_text.Send(Sci::SCI_SETMARGINRIGHT, 0, show ? 0 : BesideText);
    // A dialog that works on the text has the keyboard.
    m_text.Send(Sci::SCI_SETCARETLINEVISIBLEALWAYS, show);
}

// Folds

void TextDecorations::SetFoldLevels(qsizetype line, const std::vector<FoldLevel> &levels)
{
    const qsizetype end = std::min<qsizetype>(line + qsizetype(levels.size()), m_text.LineCount());
    for (qsizetype at = std::max<qsizetype>(line, 0); at < end; ++at) {
        const int level = LevelOf(levels[size_t(at - line)]);
        if (m_text.Send(Sci::SCI_GETFOLDLEVEL, at) == level)
            continue;
        m_folds = true;
        FoldsHaveChanged();
        m_text.Send(Sci::SCI_SETFOLDLEVEL, at, level);
    }
}

FoldLevel TextDecorations::FoldLevelOf(qsizetype line) const
{
    const long level = m_text.Send(Sci::SCI_GETFOLDLEVEL, line);
    return {int(level & Sci::SC_FOLDLEVELNUMBERMASK) - int(Sci::SC_FOLDLEVELBASE),
            bool(level & Sci::SC_FOLDLEVELHEADERFLAG)};
}

std::optional<qsizetype> TextDecorations::FoldHeaderOf(qsizetype line) const
{
    const long header = m_text.Send(Sci::SCI_GETFOLDPARENT, line);
    return header < 0 ? std::optional<qsizetype>() : header;
}

void TextDecorations::SetFolded(qsizetype line, bool folded)
{
    if (!FoldLevelOf(line).header || IsFolded(line) == folded)
        return;
    m_text.Send(Sci::SCI_FOLDLINE, line, folded ? Sci::SC_FOLDACTION_CONTRACT : Sci::SC_FOLDACTION_EXPAND);
    FoldsHaveChanged();
}

bool TextDecorations::IsFolded(qsizetype line) const
{
    return !m_text.Send(Sci::SCI_GETFOLDEXPANDED, line);
}

std::vector<qsizetype> TextDecorations::FoldedLines() const
{
    std::vector<qsizetype> lines;
    for (long line = -1; (line = m_text.Send(Sci::SCI_CONTRACTEDFOLDNEXT, line + 1)) >= 0;)
        lines.push_back(line);
    return lines;
}

void TextDecorations::FoldAll(bool folded)
{
    m_text.Send(Sci::SCI_FOLDALL, folded ? Sci::SC_FOLDACTION_CONTRACT : Sci::SC_FOLDACTION_EXPAND);
    FoldsHaveChanged();
}

bool TextDecorations::IsLineHidden(qsizetype line) const
{
    return !m_text.Send(Sci::SCI_GETLINEVISIBLE, line);
}

void TextDecorations::RevealLine(qsizetype line)
{
    if (!IsLineHidden(line))
        return;
    m_text.Send(Sci::SCI_ENSUREVISIBLE, line);
    FoldsHaveChanged();
}

qsizetype TextDecorations::SeenLine(qsizetype line) const
{
    while (IsLineHidden(line)) {
        const auto header = FoldHeaderOf(line);
        if (!header)
            break;
        line = *header;
    }
    return line;
}

void TextDecorations::MarkFolds()
{
    std::vector<qsizetype> seen;
    for (const qsizetype line : MarkedLines(LineMarker::Bookmark)) {
        if (IsLineHidden(line))
            seen.push_back(SeenLine(line));
    }
    std::sort(seen.begin(), seen.end());
    for (const qsizetype line : MarkedLines(LineMarker::FoldedBookmark)) {
        if (!std::binary_search(seen.begin(), seen.end(), line))
            SetMarker(LineMarker::FoldedBookmark, line, false);
    }
    for (const qsizetype line : seen)
        SetMarker(LineMarker::FoldedBookmark, line, true);
}

void TextDecorations::ClearFolds()
{
    if (!m_folds)
        return;
    FoldAll(false);
    m_folds = false;
    for (qsizetype line = 0; line < m_text.LineCount(); ++line) {
        if (m_text.Send(Sci::SCI_GETFOLDLEVEL, line) != Sci::SC_FOLDLEVELBASE)
            m_text.Send(Sci::SCI_SETFOLDLEVEL, line, Sci::SC_FOLDLEVELBASE);
    }
    m_text.Send(Sci::SCI_SHOWLINES, 0, m_text.LineCount() - 1);
    FoldsHaveChanged();
}

LineSpan TextDecorations::VisibleLines() const
{
    const long top = m_text.Send(Sci::SCI_GETFIRSTVISIBLELINE);
    const long bottom = top + m_text.Send(Sci::SCI_LINESONSCREEN);
    const qsizetype last =
        std::min<qsizetype>(m_text.Send(Sci::SCI_DOCLINEFROMVISIBLE, bottom), m_text.LineCount() - 1);
    return {m_text.Send(Sci::SCI_DOCLINEFROMVISIBLE, top), last + 1};
}

TextSpan TextDecorations::VisiblePart(qsizetype line) const
{
    const qsizetype start = m_text.LineStart(line);
    const qsizetype end = m_text.LineEnd(line);
    const long first = m_text.Send(Sci::SCI_POSITIONFROMLINE, line);
    const long top = m_text.Send(Sci::SCI_POINTYFROMPOSITION, 0, first);
    const long height = m_text.Send(Sci::SCI_TEXTHEIGHT, line);
    const long bottom = top + height * m_text.Send(Sci::SCI_WRAPCOUNT, line);
    int left = int(m_text.Send(Sci::SCI_GETMARGINLEFT));
    for (int margin = 0; margin < TextMarginCount; ++margin)
        left += int(m_text.Send(Sci::SCI_GETMARGINWIDTHN, margin));
    const auto offsetAt = [&](int x, long y) {
        const long row = std::clamp<long>(y, top, bottom - 1);
        return m_text.m_map.ToUnits(m_text.Send(Sci::SCI_POSITIONFROMPOINT, x, row));
    };
    const qsizetype from = offsetAt(left, 0) - 1;
    const qsizetype to = offsetAt(m_text.viewport()->width(), m_text.viewport()->height() - 1) + 2;
    return {std::clamp(from, start, end), std::clamp(to, start, end)};
}

// What changes

void TextDecorations::Load()
{
    Q_EMIT loading();
    // The text goes, and its marks would come together on what is left.
    for (int marker = 0; marker < LineMarkerCount; ++marker)
        ClearMarkers(LineMarker(marker));
    for (int indicator = 0; indicator < IndicatorCount; ++indicator)
        Clear(Indicator(indicator));
    ClearFolds();
}

void TextDecorations::ViewMayHaveChanged()
{
    if (!std::exchange(m_viewTold, false))
        return;
    QMetaObject::invokeMethod(
        this,
        [this] {
            m_viewTold = true;
            if (!std::exchange(m_foldsTold, true))
                MarkFolds();
            Q_EMIT viewChanged();
        },
        Qt::QueuedConnection);
}

void TextDecorations::FoldsHaveChanged()
{
    m_foldsTold = false;
    ViewMayHaveChanged();
}

bool TextDecorations::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Resize)
        ViewMayHaveChanged();
    return QObject::eventFilter(watched, event);
}

// Colours

void TextDecorations::ApplyLook()
{
    const QColor ink = FromScintilla(m_text.Send(Sci::SCI_STYLEGETFORE, Sci::STYLE_DEFAULT));
    const QColor back = FromScintilla(m_text.Send(Sci::SCI_STYLEGETBACK, Sci::STYLE_DEFAULT));
    const QColor margin = Mixed(ink, back, 0.06);
    const QColor accent =
        VisibleLine(m_text.palette().color(QPalette::Active, QPalette::Highlight), {back, margin});

    m_text.Send(Sci::SCI_STYLESETFORE, Sci::STYLE_LINENUMBER,
                ScintillaColour(ReadableTwin(Mixed(ink, margin, 0.6), margin)));
    m_text.Send(Sci::SCI_STYLESETBACK, Sci::STYLE_LINENUMBER, ScintillaColour(margin));
    m_text.Send(Sci::SCI_STYLESETBOLD, Sci::STYLE_LINENUMBER, 0);
    m_text.Send(Sci::SCI_STYLESETITALIC, Sci::STYLE_LINENUMBER, 0);
    m_text.Send(Sci::SCI_SETMARGINBACKN, int(TextMargin::Markers), ScintillaColour(margin));
    m_text.Send(Sci::SCI_SETFOLDMARGINCOLOUR, 1, ScintillaColour(margin));
    m_text.Send(Sci::SCI_SETFOLDMARGINHICOLOUR, 1, ScintillaColour(margin));
    m_text.Send(Sci::SCI_SETCARETLINEBACK, ScintillaColour(Mixed(ink, back, 0.08)));

    struct Row {
        Indicator indicator;
        int style;
        QColor colour;
        int fill = 40; ///< of 255, as the next one: the ground shows through, and the edge is seen
        int outline = 200;
    };
    const Row rows[] = {
        {Indicator::Brace, Sci::INDIC_STRAIGHTBOX, VisibleLine(QColor(0, 128, 0), {back})},
        // One character only, and the one that has to be found.
        {Indicator::BraceUnmatched, Sci::INDIC_FULLBOX, VisibleLine(QColor(208, 0, 0), {back}), 80, 255},
        {Indicator::SameWord, Sci::INDIC_ROUNDBOX, accent},
    };
    for (const Row &row : rows) {
        const int number = IndicatorNumber(row.indicator);
        m_text.Send(Sci::SCI_INDICSETSTYLE, number, row.style);
        m_text.Send(Sci::SCI_INDICSETFORE, number, ScintillaColour(row.colour));
        m_text.Send(Sci::SCI_INDICSETALPHA, number, row.fill);
        m_text.Send(Sci::SCI_INDICSETOUTLINEALPHA, number, row.outline);
        m_text.Send(Sci::SCI_INDICSETUNDER, number, 1); // the letters stay as they are
    }
    ApplySymbols();
    ApplyWidths();
}

void TextDecorations::ApplySymbols()
{
    const QColor ink = FromScintilla(m_text.Send(Sci::SCI_STYLEGETFORE, Sci::STYLE_LINENUMBER));
    const QColor margin = FromScintilla(m_text.Send(Sci::SCI_STYLEGETBACK, Sci::STYLE_LINENUMBER));
    const QColor accent =
        VisibleLine(m_text.palette().color(QPalette::Active, QPalette::Highlight), {margin});
    const bool markers = IsMarginShown(TextMargin::Markers);
    const bool folds = IsMarginShown(TextMargin::Folds);
    DefineMarker(MarkerNumber(LineMarker::Bookmark), markers ? Sci::SC_MARK_BOOKMARK : Sci::SC_MARK_EMPTY,
                 accent, accent);
    DefineMarker(MarkerNumber(LineMarker::FoldedBookmark),
                 markers ? Sci::SC_MARK_BOOKMARK : Sci::SC_MARK_EMPTY, accent, margin);
    // A line below what is folded shows that something is not seen.
    m_text.Send(Sci::SCI_SETFOLDFLAGS, folds ? Sci::SC_FOLDFLAG_LINEAFTER_CONTRACTED : 0);
    struct Fold {
        int number;
        int symbol;
    };
    constexpr Fold symbols[] = {
        {Sci::SC_MARKNUM_FOLDER, Sci::SC_MARK_BOXPLUS},
        {Sci::SC_MARKNUM_FOLDEROPEN, Sci::SC_MARK_BOXMINUS},
        {Sci::SC_MARKNUM_FOLDEREND, Sci::SC_MARK_BOXPLUSCONNECTED},
        {Sci::SC_MARKNUM_FOLDEROPENMID, Sci::SC_MARK_BOXMINUSCONNECTED},
        {Sci::SC_MARKNUM_FOLDERSUB, Sci::SC_MARK_VLINE},
        {Sci::SC_MARKNUM_FOLDERTAIL, Sci::SC_MARK_LCORNER},
        {Sci::SC_MARKNUM_FOLDERMIDTAIL, Sci::SC_MARK_TCORNER},
    };
    for (const Fold &fold : symbols)
        DefineMarker(fold.number, folds ? fold.symbol : int(Sci::SC_MARK_EMPTY), margin, ink);
}

void TextDecorations::DefineMarker(int number, int symbol, const QColor &ink, const QColor &back)
{
    m_text.Send(Sci::SCI_MARKERDEFINE, number, symbol);
    m_text.Send(Sci::SCI_MARKERSETFORE, number, ScintillaColour(ink));
    m_text.Send(Sci::SCI_MARKERSETBACK, number, ScintillaColour(back));
}

} // namespace zelvane
