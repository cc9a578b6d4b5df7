// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/ui/textprinter.h"

#include "platform/fileoperations.h"
#include "platform/programinfo.h"
#include "platform/runtimeerror.h"
#include "platform/styledtext.h"
#include "platform/textfile.h"

#include <algorithm>
#include <array>
#include <optional>
#include <QBuffer>
#include <QByteArray>
#include <QColor>
#include <QCursor>
#include <QFileInfo>
#include <QFont>
#include <QFontMetricsF>
#include <QGuiApplication>
#include <QLibrary>
#include <QList>
#include <QMarginsF>
#include <QPagedPaintDevice>
#include <QPageLayout>
#include <QPainter>
#include <QPdfWriter>
#include <QPrinter>
#include <QPrinterInfo>
#include <QScopeGuard>
#include <QString>
#include <QTextCharFormat>
#include <QTextLayout>
#include <QTextOption>
#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

namespace
{

/// A line that has more characters is laid out piece by piece.
constexpr qsizetype LongestPiece = 4096;
constexpr double NumberPoints = 9;
/// The least height of the margin that the number stands in, in heights of the number.
constexpr double LeastNumberMargin = 3;

[[noreturn]] void FailToPrint()
{
    throw RunTimeError(ErrorNumber::DeviceError, u"The printer could not be used"_s);
}

/// The paper of a device, and the part of it that the text takes, in dots.
struct Paper {
    QRectF all;
    QRectF text;
    QRectF number;
};

Paper PaperOf(QPagedPaintDevice &device, const QFont &numberFont)
{
    // The margins are ours to write in.
    QPageLayout layout = device.pageLayout();
    const QMarginsF margins = layout.marginsPixels(device.logicalDpiX());
    layout.setMode(QPageLayout::FullPageMode);
    device.setPageLayout(layout);
    Paper paper;
    paper.all = device.pageLayout().fullRectPixels(device.logicalDpiX());
    paper.text = paper.all.marginsRemoved(margins);
    const double least = LeastNumberMargin * QFontMetricsF(numberFont, &device).height();
    paper.text.setBottom(std::min(paper.text.bottom(), paper.all.bottom() - least));
    paper.number = QRectF(paper.text.left(), paper.text.bottom(), paper.text.width(),
                          paper.all.bottom() - paper.text.bottom());
    if (paper.text.isEmpty())
        FailToPrint();
    return paper;
}

QFont FontOf(const TextFont &font)
{
    QFont result(font.family);
    result.setPointSizeF(font.points);
    result.setItalic(font.italic);
    return result;
}

QFont NumberFontOf(const TextFont &font)
{
    QFont result(font.family);
    result.setPointSizeF(NumberPoints);
    return result;
}

/// The toolkit drops the job of a printer that has gone without a word, so the desktop is asked for it.
void CheckPrinter(const QPrinter &printer)
{
    const QString name = printer.printerName();
    if (name.isEmpty() || QPrinterInfo::printerInfo(name).printerName() != name)
        FailToPrint();
}

/// Tells what the printing system has said of the last job, if it has refused it. The toolkit hands the job
/// over without a look at the answer.
void CheckJob()
{
    constexpr int firstFailure = 0x0400; // among the answers of the Internet Printing Protocol
    QLibrary system(u"cups"_s, 2);       // the one that the toolkit has loaded
    const auto answer = reinterpret_cast<int (*)()>(system.resolve("cupsLastError"));
    const auto words = reinterpret_cast<const char *(*)()>(system.resolve("cupsLastErrorString"));
    if (answer && words && (answer() < 0 || answer() >= firstFailure))
        throw RunTimeError(ErrorNumber::DeviceError,
                           u"The printer has not taken the job: "_s + QString::fromUtf8(words()));
}

/// The work of painting one text.
class PagePainter
{
public:
    PagePainter(const StyledText &text, QPagedPaintDevice &device, const PageOrder &order)
        : m_text(text),
          m_runs(CoveringRuns(text.runs, text.text.size())),
          m_device(device),
          m_order(order),
          m_font(FontOf(text.font)),
          m_numberFont(NumberFontOf(text.font)),
          m_paper(PaperOf(device, m_numberFont)),
          m_lineHeight(QFontMetricsF(m_font, &device).lineSpacing()),
          m_y(m_paper.text.top())
    {
        for (size_t one = 0; one < m_formats.size(); ++one) {
            const quint32 colour = ColourOnPaper(text.formats[one]);
            QColor ink(int(colour & 0xFF), int((colour >> 8) & 0xFF), int((colour >> 16) & 0xFF));
            if (!order.inColour) {
                const int grey = qGray(ink.rgb());
                ink = QColor(grey, grey, grey);
            }
            m_formats[one].setForeground(ink);
            m_formats[one].setFontWeight(text.formats[one].bold ? QFont::Bold : QFont::Normal);
        }
        m_option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
        m_option.setUseDesignMetrics(true);
        const double blank = QFontMetricsF(m_font, &device).horizontalAdvance(u' ');
        m_option.setTabStopDistance(text.tabColumns * blank / TabScale());
    }

    bool Run(const std::function<bool(qint64 done, qint64 total)> &goOn)
    {
        const bool all = LayOut(goOn);
        if (m_painter.isActive() && !m_painter.end())
            FailToPrint();
        return all;
    }

    /// Lays the pages out without the device's knowing.
    /// @return how many there are up to the last one asked for; no value when the user stopped it
    std::optional<int> Count(const std::function<bool(qint64 done, qint64 total)> &goOn)
    {
        m_paints = false;
        return LayOut(goOn) ? std::optional(IsDone() ? m_order.last : m_page) : std::nullopt;
    }

private:
    bool LayOut(const std::function<bool(qint64 done, qint64 total)> &goOn)
    {
        BeginPage();
        const qsizetype length = m_text.text.size();
        qsizetype start = 0;
        int asked = 1;
        do {
            qsizetype end = m_text.text.indexOf(u'\n', start);
            if (end < 0)
                end = length;
            while (start <= end && !IsDone()) {
                start = PaintPiece(start, end);
                if (goOn && m_page != std::exchange(asked, m_page) && !goOn(std::min(start, length), length))
                    return false;
            }
            start = end + 1;
        } while (start < length && !IsDone());
        EndPage();
        return true;
    }

    bool IsPainted() const { return m_paints && m_page >= m_order.first && !IsDone(); }
    bool IsDone() const { return m_order.last > 0 && m_page > m_order.last; }

    /// How many dots of the device the toolkit makes of one unit of a tab stop.
    double TabScale() const
    {
        constexpr double units = 100;
        QTextOption option;
        option.setTabStopDistance(units);
        QTextLayout layout(u"\t"_s, m_font, &m_device);
        layout.setTextOption(option);
        layout.beginLayout();
        const QTextLine line = layout.createLine();
        layout.endLayout();
        return line.cursorToX(1) / units;
    }

    /// Paints a line of the text, or what of a long one is laid out at once. @return where the next piece or
    /// line begins
    qsizetype PaintPiece(qsizetype start, qsizetype end)
    {
        qsizetype next = std::min(end, start + LongestPiece);
        if (next < end && m_text.text[next].isLowSurrogate())
            --next;
        QTextLayout layout(m_text.text.sliced(start, next - start), m_font, &m_device);
        layout.setTextOption(m_option);
        layout.setFormats(Formats(start, next));
        layout.beginLayout();
        for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
            line.setLineWidth(m_paper.text.width());
            line.setPosition({});
        }
        layout.endLayout();
        // The last line of a piece may be full only with what follows.
        const bool whole = next == end;
        const int lines = whole ? layout.lineCount() : std::max(1, layout.lineCount() - 1);
        for (int one = 0; one < lines && one < layout.lineCount(); ++one)
            PaintLine(layout.lineAt(one));
        if (whole)
            return end + 1;
        const QTextLine last = layout.lineAt(lines - 1);
        return start + last.textStart() + last.textLength();
    }

    void PaintLine(const QTextLine &line)
    {
        const double height = std::max(m_lineHeight, line.height());
        if (m_y > m_paper.text.top() && m_y + height > m_paper.text.bottom()) {
            EndPage();
            ++m_page;
            m_y = m_paper.text.top();
            BeginPage();
        }
        if (IsPainted())
            line.draw(&m_painter, QPointF(m_paper.text.left(), m_y));
        m_y += height;
    }

    /// The device begins with the first page that it gets, and so has none when there is none.
    void BeginPage()
    {
        if (IsPainted() && !(m_painter.isActive() ? m_device.newPage() : m_painter.begin(&m_device)))
            FailToPrint();
    }

    void EndPage()
    {
        if (!IsPainted())
            return;
        m_painter.setFont(m_numberFont);
        m_painter.setPen(Qt::black);
        m_painter.drawText(m_paper.number, Qt::AlignCenter, QString::number(m_page));
    }

    /// The formats of a stretch; stretches come in order, and may go back a little.
    QList<QTextLayout::FormatRange> Formats(qsizetype start, qsizetype end)
    {
        while (m_run < m_runs.size() && m_runs[m_run].start + m_runs[m_run].length <= start)
            ++m_run;
        QList<QTextLayout::FormatRange> formats;
        for (size_t one = m_run; one < m_runs.size() && m_runs[one].start < end; ++one) {
            const StyleRun &run = m_runs[one];
            const qsizetype from = std::max<qsizetype>(run.start, start);
            const qsizetype to = std::min<qsizetype>(run.start + run.length, end);
            formats.append({int(from - start), int(to - from), m_formats[size_t(run.style)]});
        }
        return formats;
    }

    const StyledText &m_text;
    StyleRuns m_runs;
    size_t m_run = 0; ///< the first one that reaches beyond what is painted
    QPagedPaintDevice &m_device;
    PageOrder m_order;
    QFont m_font;
    QFont m_numberFont;
    Paper m_paper;
    double m_lineHeight;
    std::array<QTextCharFormat, StyleClassCount> m_formats;
    QTextOption m_option;
    QPainter m_painter;
    bool m_paints = true; ///< else only counts
    int m_page = 1;
    double m_y;
};

/// The pages as a PDF, whole. @return no value when the user stopped it
std::optional<QByteArray> PdfOf(const QPrinter &printer, const StyledText &text, const QString &title,
                                const PageOrder &order,
                                const std::function<bool(qint64 done, qint64 total)> &goOn)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    QPdfWriter writer(&buffer);
    writer.setPageLayout(printer.pageLayout());
    writer.setResolution(printer.resolution());
    writer.setTitle(title);
    writer.setCreator(ApplicationTitle());
    if (!PaintPages(text, writer, order, goOn))
        return std::nullopt;
    return bytes;
}

} // namespace

bool PaintPages(const StyledText &text, QPagedPaintDevice &device, const PageOrder &order,
                const std::function<bool(qint64 done, qint64 total)> &goOn)
{
    return PagePainter(text, device, order).Run(goOn);
}

std::optional<int> CountPages(const StyledText &text, QPagedPaintDevice &device, const PageOrder &order,
                              const std::function<bool(qint64 done, qint64 total)> &goOn)
{
    return PagePainter(text, device, order).Count(goOn);
}

void PrintOn(QPrinter &printer, const StyledText &text, const QString &title, WorkProgress &progress)
{
    PageOrder order{.inColour = printer.colorMode() == QPrinter::Color};
    if (printer.printRange() == QPrinter::PageRange) {
        order.first = std::max(1, printer.fromPage());
        order.last = printer.toPage();
    }
    const auto goOn = [&progress](qint64 done, qint64 total) { return progress.GoOn(done, total); };
    const QString file = printer.outputFileName();
    std::optional<QByteArray> bytes;
    std::optional<int> pages;
    {
        progress.Begin(u"Printing "_s + title + u"..."_s);
        const auto end = qScopeGuard([&progress] { progress.End(); });
        if (file.isEmpty())
            pages = CountPages(text, printer, order, goOn);
        else
            bytes = PdfOf(printer, text, title, order, goOn);
    }
    // What a range takes in may be no page at all; a painted one has bytes.
    if (pages ? *pages < order.first : bytes && bytes->isEmpty())
        throw RunTimeError(ErrorNumber::InvalidCall,
                           u"The text has no page "_s + QString::number(order.first));
    if (bytes)
        WriteFileBytes(QFileInfo(file).absoluteFilePath(), *bytes);
    if (!pages)
        return;
    // A job that was begun cannot be taken back: the toolkit sends what there is. So nothing stops it now.
    QGuiApplication::setOverrideCursor(QCursor(Qt::WaitCursor));
    const auto ready = qScopeGuard([] { QGuiApplication::restoreOverrideCursor(); });
    CheckPrinter(printer);
    printer.setDocName(title);
    PaintPages(text, printer, order);
    CheckJob(); // first: any other question to the system has an answer of its own
    CheckPrinter(printer);
}

} // namespace zelvane
