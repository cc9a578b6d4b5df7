// SPDX-License-Identifier: GPL-3.0-or-later

// What a key costs in the real window, at the beginning and at the end of texts of two sizes: processor time
// from the key to the painted window, status line and all.

#include "platform/ui/textaccessible.h"
#include "platform/ui/textcontrol.h"
#include "windowbench.h"

#include <cstdio>
#include <cstring>
#include <functional>
#include <QApplication>
#include <QClipboard>
#include <QKeyEvent>

using namespace zelvane;
using namespace zelvane::bench;
using namespace Qt::Literals::StringLiterals;

namespace
{

constexpr int Keys = 15;

struct Typist {
    Program &program;
    TextControl &text = *program.window->findChild<TextControl *>(u"TxtEdit"_s);

    void Key(Qt::Key key, Qt::KeyboardModifiers modifiers = {}, const QString &typed = {})
    {
        QKeyEvent press(QEvent::KeyPress, key, modifiers, typed);
        QApplication::sendEvent(&text, &press);
        QKeyEvent release(QEvent::KeyRelease, key, modifiers, typed);
        QApplication::sendEvent(&text, &release);
        QApplication::processEvents();
        text.viewport()->repaint();
    }
    double Median(const std::function<void()> &key)
    {
        key();
        return MedianMs(Keys, [&] { return Seconds(key); });
    }
    double Worst(const std::function<void()> &key)
    {
        double worst = 0;
        for (int i = 0; i < Keys; ++i)
            worst = std::max(worst, Seconds(key));
        return worst * 1000;
    }
};

void Measure(Program &program, qsizetype size, bool accents, bool wrap, double goal)
{
    Typist typist{program};
    program.window->Documents().OpenFile(program.File(size, accents));
    typist.text.SetWordWrap(wrap);
    // The lines are wrapped piece by piece while the program has nothing else to do.
    do
        typist.text.viewport()->repaint();
    while (Seconds([] { QApplication::processEvents(); }) > 0.002);
    QApplication::clipboard()->setText(u"a1 oscil 10000, 440, 1 ; a line\n"_s);
    for (const bool end : {false, true}) {
        const qsizetype place = end ? typist.text.Length() : 0;
        typist.text.SetSelection(place, place);
        const auto report = [&](const char *key, const std::function<void()> &press) {
            const QString what = u"%1 MB%2%3%4, %5: %6"_s.arg(size / 1'000'000)
                                     .arg(accents ? u" with accents" : u"")
                                     .arg(wrap ? u", wrapped" : u"")
                                     .arg(TextAccessible::IsHeard() ? u", screen reader" : u"")
                                     .arg(end ? u"end" : u"beginning")
                                     .arg(QLatin1String(key));
            const double median = typist.Median(press);
            Goal(qPrintable(what), median, goal);
            if (const double worst = typist.Worst(press); worst > goal)
                std::printf("    the worst of %d: %.3f\n", Keys, worst);
        };
        report("a letter", [&] { typist.Key(Qt::Key_X, {}, u"x"_s); });
        report("Backspace", [&] { typist.Key(Qt::Key_Backspace); });
        report("Enter", [&] { typist.Key(Qt::Key_Return, {}, u"\r"_s); });
        report("paste a line", [&] { typist.Key(Qt::Key_V, Qt::ControlModifier); });
        report("undo", [&] { typist.Key(Qt::Key_Z, Qt::ControlModifier); });
        report("redo", [&] { typist.Key(Qt::Key_Y, Qt::ControlModifier); });
        report("Left", [&] { typist.Key(Qt::Key_Left); });
        report("Delete", [&] { typist.Key(Qt::Key_Delete); });
        report("a letter over a selection", [&] {
            typist.Key(Qt::Key_Left, Qt::ShiftModifier);
            typist.Key(Qt::Key_Y, {}, u"y"_s);
        });
    }
}

} // namespace

int main(int argc, char **argv)
{
    const OwnHome home;
    QApplication application(argc, argv);
    Program program;
    std::setvbuf(stdout, nullptr, _IOLBF, 0);
    const bool quick = argc > 1 && std::strcmp(argv[1], "quick") == 0;
    Measure(program, 10'000'000, false, false, 4);
    Measure(program, 10'000'000, true, false, 4);
    Measure(program, 10'000'000, false, true, 4);
    TextAccessible::SetListener([](QAccessibleEvent &) {});
    Measure(program, 10'000'000, true, false, 4);
    if (!quick)
        Measure(program, 200'000'000, true, false, 16);
    TextAccessible::SetListener({});
    if (!quick) {
        Measure(program, 200'000'000, false, false, 16);
        Measure(program, 200'000'000, true, false, 16);
        Measure(program, 200'000'000, false, true, 16);
    }
    return 0;
}
