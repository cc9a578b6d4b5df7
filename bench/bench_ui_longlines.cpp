// SPDX-License-Identifier: GPL-3.0-or-later

// A text in one line in the real window: the time from the command or the key to the painted window.

#include "platform/ui/textcontrol.h"
#include "windowbench.h"

#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <functional>
#include <QApplication>
#include <QFile>
#include <QKeyEvent>
#include <QScrollBar>
#include <random>

using namespace zelvane;
using namespace zelvane::bench;
using namespace Qt::Literals::StringLiterals;

namespace
{

QByteArray Blanked(QByteArray text)
{
    return text.replace('\n', ' ');
}

QByteArray Numbers(qsizetype bytes)
{
    std::mt19937 random(3);
    QByteArray text = "f1 0 1048576 2 ";
    while (text.size() < bytes)
        text += QByteArray::number(double(random()) / 4294967296.0, 'g', 6) + ' ';
    text.truncate(bytes);
    return text;
}

QByteArray Letters(qsizetype bytes)
{
    std::mt19937 random(4);
    QByteArray text(bytes, Qt::Uninitialized);
    for (char &letter : text)
        letter = char('!' + random() % 94);
    return text;
}

struct Sample {
    const char *name;
    QByteArray (*make)(qsizetype bytes);
};

const Sample Samples[] = {
    {"code", [](qsizetype bytes) { return Blanked(Orchestra(bytes)).replace(';', ','); }},
    {"code with accents", [](qsizetype bytes) { return Blanked(Orchestra(bytes, true)).replace(';', ','); }},
    {"a comment", [](qsizetype bytes) { return Blanked(Orchestra(bytes)); }},
    {"numbers", Numbers},
    {"no blanks", Letters},
};

struct Reader {
    Program &program;
    TextControl &text = *program.window->findChild<TextControl *>(u"TxtEdit"_s);

    /// Processor seconds.
    double Timed(const std::function<void()> &work)
    {
        std::clock_t start = std::clock();
        work();
        QApplication::processEvents();
        text.viewport()->repaint();
        return double(std::clock() - start) / CLOCKS_PER_SEC;
    }
    double Key(Qt::Key key, Qt::KeyboardModifiers modifiers = {}, const QString &typed = {})
    {
        return Timed([&] {
            QKeyEvent press(QEvent::KeyPress, key, modifiers, typed);
            QApplication::sendEvent(&text, &press);
            QKeyEvent release(QEvent::KeyRelease, key, modifiers, typed);
            QApplication::sendEvent(&text, &release);
        });
    }
};

void Measure(Program &program, const Sample &sample, qsizetype size, bool wrap)
{
    Reader reader{program};
    reader.text.SetWordWrap(wrap);
    reader.Timed([] {}); // the text before is wrapped
    const QString name =
        program.folder.filePath(QLatin1String(sample.name) + QString::number(size) + u".orc"_s);
    QFile file(name);
    if (!file.exists() && file.open(QIODevice::WriteOnly))
        file.write(sample.make(size));
    file.close();
    const double goal = size > 5'000'000 ? 5 : 1;
    const auto report = [&](const char *what, double seconds) {
        const QString line =
            u"%1 MB in one line, %2%3: %4"_s.arg(size / 1'000'000)
                .arg(QLatin1String(sample.name), wrap ? u", wrapped"_s : QString(), QLatin1String(what));
        Goal(qPrintable(line), seconds, goal);
    };
    report("open", reader.Timed([&] { program.window->Documents().OpenFile(name); }));
    report("repaint", reader.Timed([] {}));
    report("Right", reader.Key(Qt::Key_Right));
    report("a letter", reader.Key(Qt::Key_X, {}, u"x"_s));
    report("a second letter", reader.Key(Qt::Key_X, {}, u"x"_s));
    report("Down", reader.Key(Qt::Key_Down));
    report("End", reader.Key(Qt::Key_End));
    report("End of the text", reader.Key(Qt::Key_End, Qt::ControlModifier));
    report("Left", reader.Key(Qt::Key_Left));
    report("a letter", reader.Key(Qt::Key_Y, {}, u"y"_s));
    report("a second letter", reader.Key(Qt::Key_Y, {}, u"y"_s));
    report("Backspace", reader.Key(Qt::Key_Backspace));
    report("undo", reader.Key(Qt::Key_Z, Qt::ControlModifier));
    report("select", reader.Key(Qt::Key_Left, Qt::ShiftModifier));
    report("scroll", reader.Timed([&] {
        QScrollBar *bar = wrap ? reader.text.verticalScrollBar() : reader.text.horizontalScrollBar();
        bar->setValue(bar->maximum() / 2);
    }));
    report("Home", reader.Key(Qt::Key_Home));
    report("beginning of the text", reader.Key(Qt::Key_Home, Qt::ControlModifier));
    report("Enter", reader.Key(Qt::Key_Return, {}, u"\r"_s));
}

} // namespace

int main(int argc, char **argv)
{
    const OwnHome home;
    QApplication application(argc, argv);
    Program program;
    std::setvbuf(stdout, nullptr, _IOLBF, 0);
    const qsizetype only = argc > 1 ? std::atol(argv[1]) : 0;
    for (const qsizetype megabytes : {5, 8, 50}) {
        if (only && megabytes != only)
            continue;
        for (const bool wrap : {false, true}) {
            for (const Sample &sample : Samples)
                Measure(program, sample, megabytes * 1'000'000, wrap);
        }
    }
    return 0;
}
