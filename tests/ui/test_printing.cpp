// SPDX-License-Identifier: GPL-3.0-or-later

// The pages of a printed text, and the way from the command to them.

#include "platform/fileoperations.h"
#include "platform/runtimeerror.h"
#include "platform/styledtext.h"
#include "platform/ui/textprinter.h"
#include "support/editorwindow.h"
#include "support/modaldriver.h"
#include "support/uitest.h"

#include <functional>
#include <QAction>
#include <QApplication>
#include <QBuffer>
#include <QByteArray>
#include <QFile>
#include <QFont>
#include <QImage>
#include <QLineEdit>
#include <QMarginsF>
#include <QMessageBox>
#include <QPageLayout>
#include <QPageSize>
#include <QPaintDevice>
#include <QPaintEngine>
#include <QPdfWriter>
#include <QPrintDialog>
#include <QPrintEngine>
#include <QPrinter>
#include <QProcess>
#include <QProgressDialog>
#include <QRadioButton>
#include <QStringList>
#include <QTemporaryDir>
#include <QVariant>
#include <set>

using namespace Qt::Literals::StringLiterals;
using namespace zelvane;
using namespace zelvane::test;

namespace
{

constexpr quint32 Green = 0x008000;
constexpr quint32 Blue = 0xFF0000;

StyledText Piece(const QString &text, const StyleRuns &runs = {})
{
    StyledText piece{.text = text, .runs = runs, .formats = {}, .font = {.family = u"DejaVu Sans Mono"_s}};
    piece.formats[size_t(StyleClass::Comment)] = {Green, false};
    piece.formats[size_t(StyleClass::Opcode)] = {Blue, true};
    return piece;
}

/// The output of a program over a file of these bytes; FILE stands for its name.
QByteArray OutputOver(const QByteArray &bytes, const QString &program, QStringList arguments)
{
    const QTemporaryDir folder;
    QFile file(folder.filePath(u"a.pdf"_s));
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        QTest::qFail("cannot write a test's file", __FILE__, __LINE__);
    file.close();
    arguments.replaceInStrings(u"FILE"_s, file.fileName());
    QProcess process;
    process.start(program, arguments);
    if (!process.waitForFinished(60000) || process.exitCode() != 0)
        QTest::qFail(
            qPrintable(program + u" has failed: "_s + QString::fromUtf8(process.readAllStandardError())),
            __FILE__, __LINE__);
    return process.readAllStandardOutput();
}

/// The lines of each page, as pdftotext reads them; blank ones are left out.
QList<QStringList> PagesOf(const QByteArray &pdf)
{
    const QString text =
        QString::fromUtf8(OutputOver(pdf, u"pdftotext"_s, {u"-layout"_s, u"FILE"_s, u"-"_s}));
    QList<QStringList> pages;
    QStringList parts = text.split(u'\f');
    parts.removeLast();
    for (const QString &part : parts) {
        QStringList lines;
        for (const QString &line : part.split(u'\n', Qt::SkipEmptyParts)) {
            if (!line.trimmed().isEmpty())
                lines.append(line);
        }
        pages.append(lines);
    }
    return pages;
}

/// The first page as a picture of 100 dots an inch.
QImage PictureOf(const QByteArray &pdf)
{
    return QImage::fromData(
        OutputOver(pdf, u"pdftoppm"_s, {u"-r"_s, u"100"_s, u"-f"_s, u"1"_s, u"-singlefile"_s, u"FILE"_s}));
}

std::set<QRgb> ColoursOf(const QImage &image)
{
    std::set<QRgb> colours;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            colours.insert(image.pixel(x, y) & 0xFFFFFF);
    }
    return colours;
}

/// A text on A4 pages with margins of 20 mm.
QByteArray Pdf(const StyledText &text, const PageOrder &order = {}, double margin = 20)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    QPdfWriter writer(&buffer);
    writer.setPageLayout(QPageLayout(QPageSize(QPageSize::A4), QPageLayout::Portrait,
                                     {margin, margin, margin, margin}, QPageLayout::Millimeter));
    if (!PaintPages(text, writer, order))
        QTest::qFail("not all pages were painted", __FILE__, __LINE__);
    return bytes;
}

QString NumberedLines(int count)
{
    QString text;
    for (int line = 1; line <= count; ++line)
        text += u"line%1 of the text\n"_s.arg(line);
    return text;
}

/// All lines of all pages but the number that ends each, which is checked.
QStringList LinesWithoutNumbers(const QByteArray &pdf, int firstPage = 1)
{
    QStringList lines;
    int page = firstPage;
    for (QStringList one : PagesOf(pdf)) {
        if (one.isEmpty() || one.takeLast().trimmed() != QString::number(page++))
            QTest::qFail("a page has not its number", __FILE__, __LINE__);
        lines += one;
    }
    return lines;
}

/// An editor and a script for its print dialog.
struct Printer : EditorWindow {
    ModalDriver driver;

    explicit Printer(const QString &text)
    {
        Open();
        Text().LoadText(text);
        window->Context().document.Modified = false;
    }
    QString Target() { return folder.filePath(u"out.pdf"_s); }
    /// Opens the dialog by its key; `script` has to end it.
    void Show(const std::function<void(QPrintDialog &dialog)> &script)
    {
        driver.Expect<QPrintDialog>([script](QPrintDialog &dialog) { script(dialog); });
        Row(u"mnuPrint"_s).trigger();
    }
    /// Types the name of the file, and Enter.
    static void PrintTo(QPrintDialog &dialog, const QString &file)
    {
        auto *name = dialog.findChild<QLineEdit *>(u"filename"_s);
        QTest::keyClick(&dialog, Qt::Key_F, Qt::AltModifier);
        QTRY_COMPARE(QApplication::focusWidget(), name);
        QTest::keyClick(name, Qt::Key_A, Qt::ControlModifier);
        QTest::keyClicks(name, file);
        QTest::keyClick(name, Qt::Key_Return);
    }
    QByteArray Printed()
    {
        QFile file(Target());
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
};

} // namespace

class PrintingTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void EveryLineIsThereInOrder();
    void ColoursAndBoldAreThere();
    void GreyHasNoColours();
    void LongLinesGoOn();
    void TabsStandAtTheirStops();
    void TheNumberStandsInTheMargin();
    void SomePagesAlone();
    void AnEmptyTextIsOnePage();
    void LinesHigherThanThePageComeOneAPage();
    void AStoppedOneIsNotDone();
    void TheDialogPrintsByKeys();
    void TheSelectionIsPrinted();
    void AllIsPrintedOnDemand();
    void EscapePrintsNothing();
    void EscapeStopsALongOne();
    void StoppedAndFailedOnesLeaveTheFile();
    void CountingBeginsNoDevice();
    void NoJobIsBegunThatIsStoppedOrRefused();
    void PagesThatTheTextHasNotAreTold();
};

void PrintingTest::EveryLineIsThereInOrder()
{
    const QString text = NumberedLines(10000);
    const QByteArray pdf = Pdf(Piece(text));
    QStringList expected = text.split(u'\n');
    expected.removeLast();
    const QStringList lines = LinesWithoutNumbers(pdf);
    QCOMPARE(lines.size(), expected.size());
    QVERIFY(lines == expected);
    const qsizetype pages = PagesOf(pdf).size();
    QVERIFY2(pages > 100 && pages < 250, QByteArray::number(pages).constData());
}

void PrintingTest::ColoursAndBoldAreThere()
{
    const QImage plain = PictureOf(Pdf(Piece(u"MMMM\nMMMM"_s)));
    QCOMPARE(ColoursOf(plain).count(0x000000), size_t(1));
    const QImage image =
        PictureOf(Pdf(Piece(u"MMMM\nMMMM"_s, {{0, 5, StyleClass::Comment}, {5, 4, StyleClass::Opcode}})));
    const std::set<QRgb> colours = ColoursOf(image);
    QVERIFY(colours.contains(0x008000));
    QVERIFY(colours.contains(0x0000FF));
    // Bold covers more of the paper.
    const auto ink = [](const QImage &picture, QRgb colour) {
        int count = 0;
        for (int y = 0; y < picture.height() / 2; ++y) {
            for (int x = 0; x < picture.width(); ++x)
                count += (picture.pixel(x, y) & 0xFFFFFF) == colour;
        }
        return count;
    };
    QVERIFY(ink(image, 0x0000FF) > ink(image, 0x008000));
}

void PrintingTest::GreyHasNoColours()
{
    const QImage image = PictureOf(Pdf(Piece(u"MMMM"_s, {{0, 4, StyleClass::Opcode}}), {.inColour = false}));
    for (const QRgb colour : ColoursOf(image))
        QVERIFY(qRed(colour) == qGreen(colour) && qGreen(colour) == qBlue(colour));
}

void PrintingTest::LongLinesGoOn()
{
    // One with blanks, one without, and one that is laid out in pieces; the characters tell their places.
    QString blanks;
    for (int word = 0; word < 60; ++word)
        blanks += u"word%1 "_s.arg(word);
    QString solid;
    for (int i = 0; i < 1500; ++i)
        solid += QString::number(i).rightJustified(4, u'x');
    for (const QString &line : {blanks, solid}) {
        const QStringList lines = LinesWithoutNumbers(Pdf(Piece(line + u"\nthe end"_s)));
        QVERIFY(lines.size() > 3);
        QCOMPARE(lines.last(), u"the end"_s);
        QCOMPARE(lines.mid(0, lines.size() - 1).join(line == blanks ? u" "_s : QString()), line.trimmed());
        // Every row but the last is full: no piece ends before the margin.
        for (qsizetype row = 0; row + 3 < lines.size(); ++row)
            QVERIFY(qAbs(lines[row].size() - lines[row + 1].size()) <= 7);
    }
}

void PrintingTest::TabsStandAtTheirStops()
{
    StyledText text = Piece(u"\tX\n        X\n..\tX\n\t\tX\n                X"_s);
    text.tabColumns = 8;
    const QStringList lines = LinesWithoutNumbers(Pdf(text));
    const auto column = [&lines](int line) { return lines[line].indexOf(u'X'); };
    QCOMPARE(column(0), column(1));
    QCOMPARE(column(2), column(1));
    QCOMPARE(column(3), column(4));
    QVERIFY(column(3) > column(0));
}

void PrintingTest::TheNumberStandsInTheMargin()
{
    const auto lowestInk = [](const QImage &image, bool &number) {
        // The text ends and the number begins where a white band lies between.
        QList<int> rows;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                if (qGray(image.pixel(x, y)) < 128) {
                    rows.append(y);
                    break;
                }
            }
        }
        number = rows.size() > 1 && rows.last() > image.height() * 9 / 10;
        return rows.isEmpty() ? 0 : rows.last();
    };
    for (const double margin : {0.0, 20.0, 40.0}) {
        const QImage image = PictureOf(Pdf(Piece(NumberedLines(200)), {}, margin));
        bool number = false;
        QVERIFY(lowestInk(image, number) < image.height());
        QVERIFY(number);
        const QList<QStringList> pages = PagesOf(Pdf(Piece(NumberedLines(200)), {}, margin));
        QCOMPARE(pages[1].last().trimmed(), u"2"_s);
    }
}

void PrintingTest::SomePagesAlone()
{
    const StyledText text = Piece(NumberedLines(300));
    const QStringList all = LinesWithoutNumbers(Pdf(text));
    const qsizetype onePage = PagesOf(Pdf(text))[0].size() - 1;
    const QByteArray pdf = Pdf(text, {.first = 2, .last = 3});
    QCOMPARE(PagesOf(pdf).size(), 2);
    QCOMPARE(LinesWithoutNumbers(pdf, 2), all.mid(onePage, 2 * onePage));
}

void PrintingTest::AnEmptyTextIsOnePage()
{
    QCOMPARE(PagesOf(Pdf(Piece({}))), (QList<QStringList>{PagesOf(Pdf(Piece({})))[0]}));
    QCOMPARE(LinesWithoutNumbers(Pdf(Piece({}))), QStringList());
    QCOMPARE(PagesOf(Pdf(Piece(u"\n"_s))).size(), 1);
}

void PrintingTest::LinesHigherThanThePageComeOneAPage()
{
    StyledText text = Piece(u"ab\nc"_s);
    text.font.points = 1638;
    QCOMPARE(PagesOf(Pdf(text)).size(), 3);
}

void PrintingTest::AStoppedOneIsNotDone()
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    QPdfWriter writer(&buffer);
    const StyledText text = Piece(NumberedLines(1000));
    int asked = 0;
    qint64 last = 0;
    const bool done = PaintPages(text, writer, {}, [&](qint64 now, qint64 total) {
        if (now <= last || total != text.text.size())
            asked = 1000;
        last = now;
        return ++asked < 10;
    });
    QVERIFY(!done);
    QCOMPARE(asked, 10);
}

void PrintingTest::TheDialogPrintsByKeys()
{
    Printer on(u"one\ntwo\n"_s);
    on.Show([&](QPrintDialog &dialog) {
        QCOMPARE(dialog.objectName(), u"cmPrint"_s);
        QVERIFY(dialog.isModal());
        QVERIFY(!dialog.testOption(QPrintDialog::PrintSelection));
        Printer::PrintTo(dialog, on.Target());
    });
    QCOMPARE(LinesWithoutNumbers(on.Printed()), (QStringList{u"one"_s, u"two"_s}));
    QVERIFY(!on.window->Context().document.Modified);
}

void PrintingTest::TheSelectionIsPrinted()
{
    Printer on(u"one\ntwo\nthree\n"_s);
    on.Text().ApplyStyles(0, 14, {{4, 3, StyleClass::Comment}});
    on.Text().SetSelection(4, 9);
    on.Show([&](QPrintDialog &dialog) {
        QVERIFY(dialog.testOption(QPrintDialog::PrintSelection));
        Printer::PrintTo(dialog, on.Target());
    });
    QCOMPARE(LinesWithoutNumbers(on.Printed()), (QStringList{u"two"_s, u"t"_s}));
    QVERIFY(ColoursOf(PictureOf(on.Printed())).contains(0x008000));
    QCOMPARE(on.Text().Selection(), (TextSpan{4, 9}));
}

void PrintingTest::AllIsPrintedOnDemand()
{
    Printer on(u"one\ntwo\n"_s);
    on.Text().SetSelection(0, 3);
    on.Show([&](QPrintDialog &dialog) {
        dialog.findChild<QRadioButton *>(u"printAll"_s)->setChecked(true);
        Printer::PrintTo(dialog, on.Target());
    });
    QCOMPARE(LinesWithoutNumbers(on.Printed()), (QStringList{u"one"_s, u"two"_s}));
}

void PrintingTest::EscapePrintsNothing()
{
    Printer on(u"one\n"_s);
    on.Show([&](QPrintDialog &dialog) { QTest::keyClick(&dialog, Qt::Key_Escape); });
    on.desktop.CheckAllCame();
    QVERIFY(!QFile::exists(on.Target()));
}

void PrintingTest::EscapeStopsALongOne()
{
    // It takes many times as long as the box waits before it comes.
    Printer on(QString(u"  a1 oscil 10000, 440 ; a comment\n"_s).repeated(200'000));
    QFile file(on.Target());
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write("before") == 6);
    file.close();
    on.driver.Expect<QPrintDialog>([&](QPrintDialog &dialog) {
        on.driver.Expect<QMessageBox>(
            [](QMessageBox &question) { QTest::keyClick(question.button(QMessageBox::Yes), Qt::Key_Space); });
        on.driver.Expect<QProgressDialog>([](QProgressDialog &box) {
            QCOMPARE(box.labelText(), u"Printing Untitled..."_s);
            QTest::keyClick(&box, Qt::Key_Escape);
        });
        Printer::PrintTo(dialog, on.Target());
    });
    on.Row(u"mnuPrint"_s).trigger();
    QCOMPARE(on.Printed(), "before");
    QVERIFY(on.Row(u"mnuPrint"_s).isEnabled());
}

/// Progress that stops the work at once.
struct Stopped : WorkProgress {
    QStringList begun;
    int ended = 0;
    bool goOn = false;
    void Begin(const QString &what) override { begun.append(what); }
    bool GoOn(qint64 /*done*/, qint64 /*total*/) override { return goOn; }
    void End() override { ++ended; }
};

void PrintingTest::StoppedAndFailedOnesLeaveTheFile()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"there.pdf"_s);
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write("before") == 6);
    file.close();
    QPrinter printer;
    printer.setOutputFileName(path);
    Stopped progress;
    PrintOn(printer, Piece(NumberedLines(1000)), u"x.orc"_s, progress);
    QCOMPARE(progress.begun, QStringList{u"Printing x.orc..."_s});
    QCOMPARE(progress.ended, 1);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), "before");
    file.close();

    progress.goOn = true;
    printer.setOutputFileName(u"/dev/full"_s);
    QVERIFY_THROWS_EXCEPTION(RunTimeError, PrintOn(printer, Piece(u"x"_s), u"x"_s, progress));
    QCOMPARE(progress.ended, 2);
    printer.setOutputFileName(path);
    printer.setPrintRange(QPrinter::PageRange);
    printer.setFromTo(2, 2);
    PrintOn(printer, Piece(NumberedLines(200)), u"x"_s, progress);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(PagesOf(file.readAll()).size(), 1);
}

void PrintingTest::CountingBeginsNoDevice()
{
    const StyledText text = Piece(NumberedLines(1000));
    const auto pages = int(PagesOf(Pdf(text)).size());
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    QPdfWriter writer(&buffer);
    writer.setPageLayout(QPageLayout(QPageSize(QPageSize::A4), QPageLayout::Portrait, {20, 20, 20, 20},
                                     QPageLayout::Millimeter));
    QCOMPARE(CountPages(text, writer, {}), pages);
    QCOMPARE(CountPages(text, writer, {.last = 3}), 3);
    QCOMPARE(CountPages(text, writer, {.first = pages + 1}), pages);
    QVERIFY(!CountPages(text, writer, {}, [](qint64, qint64) { return false; }));
    QVERIFY(PaintPages(text, writer, {.first = pages + 1}));
    QVERIFY(bytes.isEmpty());
    // What was counted is what is painted.
    QVERIFY(PaintPages(text, writer, {}));
    QCOMPARE(PagesOf(bytes).size(), pages);
}

/// A printer that is in no list of the desktop, and how often a job of it was begun.
class GonePrinter : public QPrinter
{
public:
    GonePrinter() : QPrinter(QPrinter::HighResolution) { setEngines(&m_engine, &m_engine); }
    int begun() const { return m_engine.begun; }

private:
    struct Engine : QPaintEngine, QPrintEngine {
        int begun = 0;
        bool begin(QPaintDevice * /*device*/) override
        {
            ++begun;
            return true;
        }
        bool end() override { return true; }
        void updateState(const QPaintEngineState & /*state*/) override {}
        void drawPixmap(const QRectF & /*to*/, const QPixmap & /*map*/, const QRectF & /*from*/) override {}
        void drawTextItem(const QPointF & /*at*/, const QTextItem & /*item*/) override {}
        Type type() const override { return User; }
        void setProperty(PrintEnginePropertyKey /*key*/, const QVariant & /*value*/) override {}
        QVariant property(PrintEnginePropertyKey key) const override
        {
            switch (key) {
            case PPK_PrinterName:
                return u"gone"_s;
            case PPK_ColorMode:
                return int(QPrinter::Color);
            case PPK_QPageLayout:
                return QVariant::fromValue(QPageLayout(QPageSize(QPageSize::A4), QPageLayout::Portrait,
                                                       {20, 20, 20, 20}, QPageLayout::Millimeter));
            default:
                return {};
            }
        }
        bool newPage() override { return true; }
        bool abort() override { return false; }
        int metric(QPaintDevice::PaintDeviceMetric metric) const override
        {
            switch (metric) {
            case QPaintDevice::PdmWidth:
                return 2480;
            case QPaintDevice::PdmHeight:
                return 3508;
            case QPaintDevice::PdmDevicePixelRatio:
                return 1;
            case QPaintDevice::PdmDevicePixelRatioScaled:
                return int(QPaintDevice::devicePixelRatioFScale());
            default:
                return 300;
            }
        }
        QPrinter::PrinterState printerState() const override
        {
            return begun > 0 ? QPrinter::Active : QPrinter::Idle;
        }
    };
    Engine m_engine;
};

/// The description of the error that a print ends with; empty for none.
QString ErrorOfPrint(QPrinter &printer, const StyledText &text, WorkProgress &progress)
{
    try {
        PrintOn(printer, text, u"x.orc"_s, progress);
    } catch (const RunTimeError &error) {
        return error.Description();
    }
    return {};
}

void PrintingTest::NoJobIsBegunThatIsStoppedOrRefused()
{
    const StyledText text = Piece(NumberedLines(200));
    GonePrinter printer;
    Stopped progress;
    QCOMPARE(ErrorOfPrint(printer, text, progress), QString());
    QCOMPARE(progress.begun.size(), 1);
    QCOMPARE(progress.ended, 1);
    QCOMPARE(printer.begun(), 0);
    progress.goOn = true;
    QCOMPARE(ErrorOfPrint(printer, text, progress), u"The printer could not be used"_s);
    QCOMPARE(progress.ended, 2);
    QCOMPARE(printer.begun(), 0);
    QVERIFY(!QApplication::overrideCursor());
    // It is one that paints: nothing else has kept the job back.
    PaintPages(text, printer, {});
    QCOMPARE(printer.begun(), 1);
}

void PrintingTest::PagesThatTheTextHasNotAreTold()
{
    const StyledText text = Piece(u"one page"_s);
    const QTemporaryDir folder;
    Stopped progress;
    progress.goOn = true;
    QPrinter file;
    file.setOutputFileName(folder.filePath(u"out.pdf"_s));
    file.setPrintRange(QPrinter::PageRange);
    file.setFromTo(5, 6);
    QCOMPARE(ErrorOfPrint(file, text, progress), u"The text has no page 5"_s);
    QVERIFY(!QFile::exists(file.outputFileName()));
    GonePrinter printer;
    printer.setPrintRange(QPrinter::PageRange);
    printer.setFromTo(2, 2);
    QCOMPARE(ErrorOfPrint(printer, text, progress), u"The text has no page 2"_s);
    QCOMPARE(printer.begun(), 0);
}

int main(int argc, char **argv)
{
    qputenv("CUPS_SERVER", "/no/printers"); // of this machine
    return RunUiTest<PrintingTest>(argc, argv);
}

#include "test_printing.moc"
