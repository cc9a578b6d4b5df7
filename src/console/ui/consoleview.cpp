// SPDX-License-Identifier: GPL-3.0-or-later
#include "console/ui/consoleview.h"

#include <algorithm>
#include <array>
#include <QAccessible>
#include <QAccessibleWidget>
#include <QAction>
#include <QChar>
#include <QClipboard>
#include <QColor>
#include <QContextMenuEvent>
#include <QEvent>
#include <QFont>
#include <QFontInfo>
#include <QFontMetricsF>
#include <QGuiApplication>
#include <QHash>
#include <QKeyEvent>
#include <QList>
#include <QMenu>
#include <QMouseEvent>
#include <QPainter>
#include <QPaintEvent>
#include <QPalette>
#include <QPointF>
#include <QResizeEvent>
#include <QScrollBar>
#include <QString>
#include <QStringList>
#include <QStringView>
#include <QTextCharFormat>
#include <QTextLayout>
#include <QTextLine>
#include <QTextOption>
#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

namespace
{

constexpr int TabColumns = 8;
constexpr int Margin = 4;
constexpr int MarkWidth = 4;
/// How much of a line is laid out at once, in UTF-16 units.
constexpr qsizetype PieceLength = 128;

/// The longest line that is laid out as a whole, in UTF-16 units.
constexpr qsizetype LongestWhole = 2000;
constexpr char16_t FirstRightToLeft = 0x590;

/// Whether a line has to be laid out as a whole, since it does not run in one direction.
bool RunsBothWays(QStringView text)
{
    return text.size() <= LongestWhole && std::any_of(text.begin(), text.end(), [](QChar character) {
               return character >= FirstRightToLeft &&
                      (character.direction() == QChar::DirR || character.direction() == QChar::DirAL);
           });
}

/// The sixteen colours, light enough to be read on a dark ground, dark enough on a light one.
QColor ColourOf(int number, bool isDark)
{
    static constexpr std::array<QRgb, 16> onLight{0x000000, 0xb00000, 0x007000, 0x805000, 0x0000c0, 0x900090,
                                                  0x006878, 0x606060, 0x505050, 0xd00000, 0x008000, 0x906000,
                                                  0x2020e0, 0xb000b0, 0x007888, 0x404040};
    static constexpr std::array<QRgb, 16> onDark{0x909090, 0xff7070, 0x60d060, 0xd8b040, 0x80a0ff, 0xe080e0,
                                                 0x50d0d0, 0xd0d0d0, 0xa0a0a0, 0xff9090, 0x80f080, 0xf0d060,
                                                 0xa0c0ff, 0xffa0ff, 0x70f0f0, 0xffffff};
    return QColor((isDark ? onDark : onLight)[size_t(number)]);
}

/// The columns that a character takes at a place of its line, where it is no tab one.
qsizetype ColumnsOf(QChar character, qsizetype column)
{
    return character == u'\t' ? TabColumns - column % TabColumns : 1;
}

/// A piece of a line as it is painted: tabs reach to the next stop.
QString Expanded(QStringView piece, qsizetype column)
{
    QString text;
    text.reserve(piece.size() + TabColumns);
    for (const QChar character : piece) {
        const qsizetype columns = ColumnsOf(character, column);
        text.append(character == u'\t' ? QString(columns, u' ') : QString(character));
        column += columns;
    }
    return text;
}

/// Where a piece of at most PieceLength units ends that starts at `at`: not within a character.
qsizetype PieceEnd(QStringView text, qsizetype at, qsizetype end)
{
    qsizetype cut = at + PieceLength;
    if (cut >= end)
        return end;
    while (cut < end && (text[cut].isLowSurrogate() || text[cut].isMark()))
        ++cut;
    return cut;
}

/// A font with the widths of its characters, so that what is out of view need not be laid out.
class Face
{
public:
    explicit Face(const QFont &face)
        : font(face),
          m_metrics(face),
          m_isFixed(QFontInfo(face).fixedPitch()),
          m_tab(m_metrics.horizontalAdvance(u' '))
    {
        m_narrow.fill(-1);
    }

    /// The width of a piece, and the column behind it. What is laid out together may differ a little.
    double WidthOf(QStringView piece, qsizetype &column)
    {
        double width = 0;
        for (qsizetype i = 0; i < piece.size(); ++i) {
            const QChar character = piece[i];
            const qsizetype columns = ColumnsOf(character, column);
            column += columns;
            if (character == u'\t')
                width += double(columns) * m_tab;
            else if (character.unicode() < m_narrow.size())
                width += NarrowWidth(character);
            else if (character.isHighSurrogate() && i + 1 < piece.size())
                width += WideWidth(piece.sliced(i, 2));
            else if (!character.isLowSurrogate() && !character.isMark())
                width += WideWidth(piece.sliced(i, 1));
        }
        return width;
    }
    /// The width of a piece that is laid out, which its sum need not be.
    double LaidOutWidth(const QString &piece, double sum) const
    {
        const bool isPlain = m_isFixed && std::all_of(piece.begin(), piece.end(),
                                                      [](QChar character) { return character < u'\x7f'; });
        return isPlain ? sum : m_metrics.horizontalAdvance(piece);
    }

    const QFont font;

private:
    double NarrowWidth(QChar character)
    {
        double &width = m_narrow[character.unicode()];
        if (width < 0)
            width = m_metrics.horizontalAdvance(character);
        return width;
    }
    double WideWidth(QStringView character)
    {
        const char32_t key = character.size() > 1
                                 ? QChar::surrogateToUcs4(character[0].unicode(), character[1].unicode())
                                 : char32_t(character[0].unicode());
        auto known = m_wide.find(key);
        if (known == m_wide.end())
            known = m_wide.insert(key, m_metrics.horizontalAdvance(character.toString()));
        return *known;
    }

    QFontMetricsF m_metrics;
    bool m_isFixed;
    double m_tab;
    std::array<double, 256> m_narrow;
    QHash<char32_t, double> m_wide;
};

/// What a screen reader is told: the lines that are selected.
class ConsoleViewAccessible : public QAccessibleWidget
{
public:
    explicit ConsoleViewAccessible(ConsoleView &view)
        : QAccessibleWidget(&view, QAccessible::StaticText), m_view(view)
    {
    }
    QString text(QAccessible::Text kind) const override
    {
        return kind == QAccessible::Value ? m_view.SelectedText() : QAccessibleWidget::text(kind);
    }

private:
    ConsoleView &m_view;
};

QAccessibleInterface *MakeAccessible(const QString &className, QObject *object)
{
    Q_UNUSED(className);
    auto *view = qobject_cast<ConsoleView *>(object);
    return view ? new ConsoleViewAccessible(*view) : nullptr;
}

} // namespace

ConsoleView::ConsoleView(const LineStore &store, QWidget *parent)
    : QAbstractScrollArea(parent), m_store(store)
{
    QAccessible::installFactory(MakeAccessible); // again and again is once
    setFocusPolicy(Qt::StrongFocus);
    viewport()->setBackgroundRole(QPalette::Base);
    viewport()->setCursor(Qt::IBeamCursor);
    horizontalScrollBar()->setSingleStep(20);
}

int ConsoleView::LineHeight() const
{
    return std::max(1, fontMetrics().lineSpacing());
}

int ConsoleView::LinesInView() const
{
    return std::max(1, viewport()->height() / LineHeight());
}

bool ConsoleView::IsAtEnd() const
{
    return verticalScrollBar()->value() >= verticalScrollBar()->maximum();
}

qint64 ConsoleView::LineAt(int y) const
{
    const qint64 number = m_store.First() + verticalScrollBar()->value() + std::max(0, y) / LineHeight();
    return std::clamp(number, m_store.First() - 1, m_store.End() - 1);
}

void ConsoleView::SetRanges(bool follow)
{
    const qint64 lines = m_store.End() - m_store.First() + (m_unfinished.text.isEmpty() ? 0 : 1);
    QScrollBar &vertical = *verticalScrollBar();
    vertical.setPageStep(LinesInView());
    vertical.setRange(0, int(std::max<qint64>(0, lines - LinesInView())));
    if (follow)
        vertical.setValue(vertical.maximum());
    const qint64 longest = std::max(m_store.LongestLine(), m_unfinished.text.size());
    const qint64 width =
        std::max(longest * fontMetrics().averageCharWidth(), qint64(m_widest) + 1) + 2 * Margin + MarkWidth;
    horizontalScrollBar()->setPageStep(viewport()->width());
    horizontalScrollBar()->setRange(0, int(std::max<qint64>(0, width - viewport()->width())));
}

void ConsoleView::scrollContentsBy(int dx, int dy)
{
    QAbstractScrollArea::scrollContentsBy(dx, dy);
    if (dy != 0)
        MeasureShown();
}

void ConsoleView::UpdateLines(const StyledLine &unfinished)
{
    // Lines that have gone at the top move what is in view: it stays where the user looks.
    const bool follow = IsAtEnd();
    const int gone = int(m_store.First() - m_shownFirst);
    m_shownFirst = m_store.First();
    m_unfinished = unfinished;
    const int value = verticalScrollBar()->value() - gone;
    SetRanges(follow);
    if (!follow)
        verticalScrollBar()->setValue(std::max(0, value));
    MeasureShown();
    viewport()->update();
}

void ConsoleView::GoToLine(qint64 number)
{
    Move(number, false);
    const qint64 row = number - m_store.First();
    verticalScrollBar()->setValue(int(std::max<qint64>(0, row - LinesInView() / 3)));
}

void ConsoleView::Move(qint64 number, bool extend)
{
    if (m_store.End() == m_store.First())
        return;
    m_current = std::clamp(number, m_store.First(), m_store.End() - 1);
    if (!extend || m_anchor < 0)
        m_anchor = m_current;
    const qint64 row = m_current - m_store.First();
    QScrollBar &vertical = *verticalScrollBar();
    if (row < vertical.value())
        vertical.setValue(int(row));
    else if (row >= vertical.value() + LinesInView())
        vertical.setValue(int(row - LinesInView() + 1));
    viewport()->update();
    if (QAccessible::isActive()) {
        QAccessibleValueChangeEvent event(this, SelectedText());
        QAccessible::updateAccessibility(&event);
    }
}

QString ConsoleView::SelectedText() const
{
    if (m_current < 0)
        return {};
    QStringList lines;
    const qint64 last = std::min(std::max(m_anchor, m_current), m_store.End() - 1);
    for (qint64 i = std::max(std::min(m_anchor, m_current), m_store.First()); i <= last; ++i)
        lines.append(m_store.At(i).line.text);
    return lines.join(u'\n');
}

void ConsoleView::CopySelected() const
{
    if (const QString text = SelectedText(); !text.isEmpty())
        QGuiApplication::clipboard()->setText(text);
}

void ConsoleView::SelectAll()
{
    if (m_store.End() == m_store.First())
        return;
    m_anchor = m_store.First();
    m_current = m_store.End() - 1;
    viewport()->update();
}

struct ConsoleView::Faces {
    explicit Faces(const QFont &font) : plain(font), bold(Bold(font)) {}
    static QFont Bold(QFont font)
    {
        font.setBold(true);
        return font;
    }

    Face plain;
    Face bold;
};

void ConsoleView::MeasureShown()
{
    // What is not in view is taken to be of average width: wide characters need more.
    Faces faces(font());
    double widest = m_widest;
    // No character is wider than high, but a tab.
    const int most = std::max(LineHeight(), TabColumns * fontMetrics().averageCharWidth());
    const qint64 top = m_store.First() + verticalScrollBar()->value();
    for (qint64 number = top; number <= std::min(top + LinesInView(), m_store.End()); ++number) {
        const bool isStored = number < m_store.End();
        const QStringView text = isStored ? m_store.At(number).line.text : m_unfinished.text;
        if (double(text.size()) * most <= widest)
            continue;
        Face &face = isStored && m_store.At(number).mark == LineMark::Error ? faces.bold : faces.plain;
        qsizetype column = 0;
        widest = std::max(widest, face.WidthOf(text, column));
    }
    if (widest > m_widest) {
        m_widest = widest;
        SetRanges(false);
    }
}

void ConsoleView::PaintWhole(QPainter &painter, const Faces &faces, QPointF at, const StyledLine &line,
                             const QColor &plain, bool bold, bool selected) const
{
    const bool isDark = palette().color(QPalette::Base).lightness() < 128;
    QString shown;
    QList<QTextLayout::FormatRange> formats;
    qsizetype done = 0;
    qsizetype column = 0;
    const auto take = [&](qsizetype end) {
        const qsizetype start = shown.size();
        const QString piece = Expanded(QStringView(line.text).sliced(done, end - done), column);
        shown += piece;
        column += piece.size();
        done = end;
        return std::pair(int(start), int(piece.size()));
    };
    for (const StyleSpan &span : line.spans) {
        take(span.start);
        const auto [start, length] = take(span.start + span.length);
        QTextCharFormat format;
        if (span.style.colour >= 0 && !selected)
            format.setForeground(ColourOf(span.style.colour, isDark));
        format.setFontWeight(bold || span.style.bold ? QFont::Bold : faces.plain.font.weight());
        formats.append({start, length, format});
    }
    take(line.text.size());
    QTextOption option(Qt::AlignLeft);
    option.setTextDirection(Qt::LeftToRight);
    option.setWrapMode(QTextOption::NoWrap);
    QTextLayout layout(shown, bold ? faces.bold.font : faces.plain.font);
    layout.setTextOption(option);
    layout.setFormats(formats);
    layout.beginLayout();
    const QTextLine row = layout.createLine();
    layout.endLayout();
    painter.setPen(plain);
    layout.draw(&painter, at - QPointF(0, row.ascent()));
}

void ConsoleView::PaintLine(QPainter &painter, Faces &faces, int y, const StyledLine &line, LineMark mark,
                            bool selected) const
{
    const QPalette &colours = palette();
    const bool isDark = colours.color(QPalette::Base).lightness() < 128;
    const int ascent = fontMetrics().ascent();
    const int right = viewport()->width();
    if (selected)
        painter.fillRect(0, y, right, LineHeight(), colours.color(QPalette::Highlight));
    if (mark != LineMark::None)
        painter.fillRect(0, y, MarkWidth, LineHeight(), ColourOf(mark == LineMark::Error ? 1 : 3, isDark));
    const QStringView text = line.text;
    const QColor plain = colours.color(selected ? QPalette::HighlightedText : QPalette::Text);
    double x = Margin + MarkWidth - horizontalScrollBar()->value();
    if (RunsBothWays(text)) {
        PaintWhole(painter, faces, QPointF(x, y + ascent), line, plain, mark == LineMark::Error, selected);
        return;
    }
    qsizetype column = 0;
    qsizetype done = 0;
    // By pieces: a line may be hundreds of times as long as what is in view.
    const auto draw = [&](qsizetype end, TextStyle style) {
        Face &face = style.bold || mark == LineMark::Error ? faces.bold : faces.plain;
        while (done < end && x <= right) {
            const qsizetype next = PieceEnd(text, done, end);
            const QStringView piece = text.sliced(done, next - done);
            const qsizetype from = column;
            const double width = face.WidthOf(piece, column);
            done = next;
            if (x + width < -LineHeight()) {
                x += width;
                continue;
            }
            const QString shown = Expanded(piece, from);
            painter.setFont(face.font);
            painter.setPen(style.colour >= 0 && !selected ? ColourOf(style.colour, isDark) : plain);
            painter.drawText(QPointF(x, y + ascent), shown);
            x += face.LaidOutWidth(shown, width);
        }
    };
    for (const StyleSpan &span : line.spans) {
        draw(span.start, {});
        if (x > right)
            return;
        draw(span.start + span.length, span.style);
    }
    draw(text.size(), {});
}

void ConsoleView::paintEvent(QPaintEvent *event)
{
    Q_UNUSED(event);
    QPainter painter(viewport());
    Faces faces(font());
    const qint64 top = m_store.First() + verticalScrollBar()->value();
    const qint64 from = std::min(m_anchor, m_current);
    const qint64 to = std::max(m_anchor, m_current);
    for (int row = 0; row <= LinesInView(); ++row) {
        const qint64 number = top + row;
        const int y = row * LineHeight();
        if (number < m_store.End()) {
            const StoredLine &line = m_store.At(number);
            PaintLine(painter, faces, y, line.line, line.mark,
                      m_current >= 0 && number >= from && number <= to);
        } else if (number == m_store.End()) {
            PaintLine(painter, faces, y, m_unfinished, LineMark::None, false);
        }
    }
}

void ConsoleView::resizeEvent(QResizeEvent *event)
{
    const bool follow = IsAtEnd();
    QAbstractScrollArea::resizeEvent(event);
    SetRanges(follow);
}

void ConsoleView::changeEvent(QEvent *event)
{
    QAbstractScrollArea::changeEvent(event);
    if (event->type() == QEvent::FontChange) {
        m_widest = 0;
        SetRanges(IsAtEnd());
        MeasureShown();
    }
}

void ConsoleView::keyPressEvent(QKeyEvent *event)
{
    const bool extend = event->modifiers().testFlag(Qt::ShiftModifier);
    const qint64 here = m_current < 0 ? m_store.End() : m_current;
    switch (event->key()) {
    case Qt::Key_Up:
        Move(here - 1, extend);
        return;
    case Qt::Key_Down:
        Move(here + 1, extend);
        return;
    case Qt::Key_PageUp:
        Move(here - LinesInView(), extend);
        return;
    case Qt::Key_PageDown:
        Move(here + LinesInView(), extend);
        return;
    case Qt::Key_Home:
        Move(m_store.First(), extend);
        return;
    case Qt::Key_End:
        Move(m_store.End() - 1, extend);
        return;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        if (m_current >= 0)
            Q_EMIT LineActivated(m_current);
        return;
    default:
        QAbstractScrollArea::keyPressEvent(event);
    }
}

void ConsoleView::mousePressEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton)
        Move(LineAt(event->pos().y()), event->modifiers().testFlag(Qt::ShiftModifier));
}

void ConsoleView::mouseMoveEvent(QMouseEvent *event)
{
    if (event->buttons().testFlag(Qt::LeftButton))
        Move(LineAt(event->pos().y()), true);
}

void ConsoleView::mouseDoubleClickEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton || m_store.End() == m_store.First())
        return;
    Move(LineAt(event->pos().y()), false);
    Q_EMIT LineActivated(m_current);
}

void ConsoleView::contextMenuEvent(QContextMenuEvent *event)
{
    if (m_store.End() == m_store.First())
        return;
    // Of the pointer's line where it stands outside of the selection; a key means the selection.
    if (event->reason() == QContextMenuEvent::Mouse) {
        const qint64 line = LineAt(event->pos().y());
        if (m_current < 0 || line < std::min(m_anchor, m_current) || line > std::max(m_anchor, m_current))
            Move(line, false);
    }
    QMenu menu(this);
    menu.setObjectName(u"mnuOutput"_s);
    const auto row = [&](const QString &caption, const QString &name, bool enabled, auto &&handler) {
        QAction *action = menu.addAction(caption, this, handler);
        action->setObjectName(name);
        action->setEnabled(enabled);
    };
    row(u"&Go to the line in the editor\tEnter"_s, u"mnuGoToLine"_s, m_current >= 0,
        [this] { Q_EMIT LineActivated(m_current); });
    menu.addSeparator();
    row(u"&Copy\tCtrl+Shift+C"_s, u"mnuCopyLines"_s, m_current >= 0, [this] { CopySelected(); });
    row(u"Select &all\tCtrl+A"_s, u"mnuSelectAllLines"_s, true, [this] { SelectAll(); });
    menu.exec(event->globalPos());
}

} // namespace zelvane
