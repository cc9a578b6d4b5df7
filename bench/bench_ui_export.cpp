// SPDX-License-Identifier: GPL-3.0-or-later

// The export of a large coloured document, from the text control to the file, beside encoding and writing
// what comes out of it; and its pages.

#include "language/scanner.h"
#include "peercontrol.h"
#include "platform/styledtext.h"
#include "platform/textfile.h"
#include "platform/ui/qtdesktop.h"
#include "platform/ui/textcontrol.h"
#include "platform/ui/textprinter.h"
#include "texttools/htmlwriter.h"
#include "texttools/rtfwriter.h"
#include "uibench.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <QApplication>
#include <QBuffer>
#include <QByteArray>
#include <QPdfWriter>
#include <QString>
#include <QTemporaryDir>

using namespace zelvane;
using namespace zelvane::bench;
using namespace Qt::Literals::StringLiterals;

namespace
{

constexpr qsizetype Size = 10'000'000;
constexpr int Runs = 15;
constexpr int PrintedLines = 10'000;

/// A coloured document in the text control, and a folder to write it to.
struct Document {
    QtDesktop desktop;
    TextControl control{desktop};
    QTemporaryDir folder;
    QString path = folder.filePath(u"out"_s);

    explicit Document(const QByteArray &bytes)
    {
        const QString text = QString::fromUtf8(bytes);
        control.LoadText(text);
        control.ApplyStyles(0, text.size(), ScanRange(text, 0, 0, ScanMode::Orchestra, Opcodes()).runs);
    }

    StyledText All() const { return control.Styled(0, control.Length()); }
};

/// The clock's seconds: writing waits for the disk.
template <typename Work> double ClockSeconds(Work work)
{
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

void PrintGoals(const char *kind, const QByteArray &bytes)
{
    const Document document(bytes);
    const QByteArray html = HtmlDocument(document.All(), u"x"_s).value();
    const QByteArray rtf = RtfDocument(document.All()).value();
    const StyledText all = document.All();
    // The least of runs that take turns: what else the machine does hits all of them.
    const auto compare = [&](const char *what, const QByteArray &output, auto writer, auto encode) {
        const QString text = QString::fromLatin1(output);
        const auto least = [&document](double &seconds, auto make) {
            seconds = std::min(seconds, ClockSeconds([&] { WriteFileBytes(document.path, make()); }));
        };
        double whole = 1e9, made = 1e9, written = 1e9;
        for (int run = 0; run < Runs; ++run) {
            least(whole, [&] { return writer(document.All()); });
            least(made, [&] { return writer(all); });
            least(written, [&] { return encode(text); });
        }
        std::printf(
            "%s of %.1f MB: from the control to the file %.0f ms, from text and runs %.0f ms; encoded "
            "and written alone %.0f ms, the whole takes %.1f times that\n",
            what, double(output.size()) / 1e6, whole * 1000, made * 1000, written * 1000, whole / written);
        return made / written;
    };
    std::printf("\n10 MB of text %s\n", kind);
    Goal("HTML writer to the file / encoding and writing its output",
         compare(
             "HTML", html, [](const StyledText &text) { return *HtmlDocument(text, u"x"_s); },
             [](const QString &text) { return text.toLatin1(); }),
         5);
    Goal("RTF writer to the file / encoding and writing its output",
         compare(
             "RTF", rtf, [](const StyledText &text) { return *RtfDocument(text); },
             [](const QString &text) { return text.toUtf8(); }),
         5);
}

void PrintPages()
{
    const QByteArray orchestra = Orchestra(1'000'000, true);
    qsizetype end = 0;
    for (int line = 0; line < PrintedLines; ++line)
        end = orchestra.indexOf('\n', end) + 1;
    const Document document(orchestra.first(end));
    const double seconds = ClockSeconds([&] {
        QByteArray bytes;
        QBuffer buffer(&bytes);
        buffer.open(QIODevice::WriteOnly);
        QPdfWriter writer(&buffer);
        PaintPages(document.All(), writer, {});
    });
    Goal("seconds to print 10,000 lines to a PDF", seconds, 5);
}

} // namespace

int main(int argc, char **argv)
{
    UseFreshMemory();
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    PrintGoals("in ASCII", Orchestra(Size));
    PrintGoals("with accents", Orchestra(Size, true));
    PrintPages();
    return 0;
}
