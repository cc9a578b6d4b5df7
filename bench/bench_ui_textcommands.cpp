// SPDX-License-Identifier: GPL-3.0-or-later

// The commands on the text as the user has them: ten megabytes of coloured text out of the real control, one
// edit in, the window painted again. Beside them what it takes to give the control a wholly new text and
// paint it.

#include "language/scanner.h"
#include "peercontrol.h"
#include "platform/ui/qtdesktop.h"
#include "platform/ui/textcontrol.h"
#include "shell/findreplace.h"
#include "shell/textops.h"
#include "texttools/reformatter.h"
#include "uibench.h"

#include <cstring>
#include <QApplication>
#include <QFile>
#include <QTemporaryDir>

using namespace zelvane;
using namespace zelvane::bench;
using namespace Qt::Literals::StringLiterals;

namespace
{

constexpr qsizetype Size = 10'000'000;

struct QuietDesktop : QtDesktop {
    BoxAnswer MessageBox(const MessageBoxRequest &) override { return BoxAnswer::Ok; }
};

struct QuietStatus : StatusLine {
    QString Text() const override { return {}; }
    void Show(const QString &) override {}
};

struct NoWindows : ProgramWindows {
    bool MainWindowActive() const override { return true; }
    void MinimizeMainWindow() override {}
    void RaiseMainWindow() override {}
    void ShowPreferences() override {}
};

struct NoOperations : DocumentOperations {
    void OpenFile(const QString &, OpenOrigin) override {}
    bool SaveFile(const QString &) override { return true; }
    void NewFile(FileKind, const QString &) override {}
    void InsertFile(const QString &) override {}
    bool QuerySave() override { return true; }
    void KeepUnsaved() override {}
};

struct Editor {
    QTemporaryDir folder;
    DocumentRecord document;
    QuietDesktop desktop;
    TextControl control{desktop};
    SettingsStore settings{folder.filePath(u"settings"_s)};
    QuietStatus status;
    NoWindows windows;
    NoOperations operations;
    EditorContext context{document, control, settings, desktop, status, windows, operations};

    Editor()
    {
        control.resize(900, 600);
        control.show();
    }
    void Load(const QString &text, const StyleRuns &runs)
    {
        control.LoadText(text);
        control.ApplyStyles(0, text.size(), runs);
        control.SetSelection(0, -1);
        Paint();
    }
    void Paint()
    {
        control.viewport()->repaint();
        QCoreApplication::processEvents();
    }
};

/// Megabytes that the process holds (`VmRSS`) or has held since the last reset (`VmHWM`); 0 where the system
/// does not tell.
double Megabytes(const char *field)
{
    QFile file(u"/proc/self/status"_s);
    if (!file.open(QIODevice::ReadOnly))
        return 0;
    const QList<QByteArray> lines = file.readAll().split('\n');
    for (const QByteArray &line : lines) {
        if (line.startsWith(field))
            return line.mid(qsizetype(std::strlen(field)) + 1).trimmed().split(' ').first().toDouble() / 1024;
    }
    return 0;
}

void ResetPeak()
{
    QFile file(u"/proc/self/clear_refs"_s);
    if (file.open(QIODevice::WriteOnly))
        file.write("5");
}

} // namespace

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    UseFreshMemory();
    QApplication application(argc, argv);
    const QByteArray bytes = Orchestra(Size);
    const QString text = QString::fromUtf8(bytes);
    const StyleRuns runs = ScanRange(text, 0, 0, ScanMode::Orchestra, Opcodes()).runs;
    Editor editor;

    const double copy = MedianMs(9, [&] {
        return Seconds([&] {
            for (int i = 0; i < 2; ++i) {
                QString other(text.constData(), text.size());
                if (other.isEmpty())
                    std::abort();
            }
        });
    });
    const double layout = MedianMs(5, [&] {
        editor.Load(text, runs);
        return Seconds([&] { editor.Load(text, runs); });
    });
    std::printf(
        "copying the text twice: %.1f ms; giving the control a new coloured text and painting it: %.1f ms\n",
        copy, layout);
    std::printf("%-40s %10s %12s %14s\n", "command", "ms", "x layout", "peak, x text");

    const auto measure = [&](const char *name, const std::function<void()> &command) {
        if (argc > 1 && std::strcmp(argv[1], name) != 0)
            return;
        double peak = 0;
        const double ms = MedianMs(3, [&] {
            editor.Load(text, runs);
            const double before = Megabytes("VmRSS:");
            ResetPeak();
            const double seconds = Seconds([&] {
                editor.control.BeginCommand();
                command();
                editor.control.EndCommand();
                editor.Paint();
            });
            peak = std::max(peak, Megabytes("VmHWM:") - before);
            return seconds;
        });
        const double megabytes = double(text.size()) * sizeof(QChar) / 1024 / 1024;
        std::printf("%-40s %10.1f %12.2f %14.2f\n", name, ms, ms / layout, peak / megabytes);
    };

    EditorContext &context = editor.context;
    measure("comment", [&] { CommentSelection(context); });
    measure("uncomment", [&] { UncommentSelection(context); });
    measure("remove comments", [&] { RemoveComments(context); });
    measure("increase indent", [&] { IndentSelection(context, false); });
    measure("decrease indent", [&] { IndentSelection(context, true); });
    measure("uppercase", [&] { ChangeCase(context, CaseChange::Upper); });
    measure("lowercase", [&] { ChangeCase(context, CaseChange::Lower); });
    measure("capitalize", [&] { ChangeCase(context, CaseChange::Capitalize); });
    measure("replace all", [&] { ReplaceAll(context, {.find = u"asig"_s, .replace = u"asignal"_s}); });
    for (int algorithm = 0; algorithm < 10; ++algorithm) {
        const QByteArray name = FormattingAlgorithmTexts()[size_t(algorithm)].name.toUtf8();
        measure(name.constData(), [&] { ReformatSelection(context, FormattingAlgorithm(algorithm)); });
    }
    return 0;
}
