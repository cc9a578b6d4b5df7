// SPDX-License-Identifier: GPL-3.0-or-later

// What a key costs in the real window, at the beginning and at the end of texts of two sizes: processor time
// from the key to the painted window, status line and all. With all writing aids on, also what the pause
// behind a key costs; "pauses" tells it for each aid alone.

#include "platform/ui/textaccessible.h"
#include "platform/ui/textcontrol.h"
#include "shell/settingkey.h"
#include "shell/ui/appearance.h"
#include "windowbench.h"
#include "writing/writingkeys.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <functional>
#include <QApplication>
#include <QClipboard>
#include <QEventLoop>
#include <QKeyEvent>
#include <QTimer>
#include <vector>

using namespace zelvane;
using namespace zelvane::bench;
using namespace Qt::Literals::StringLiterals;

namespace
{

constexpr int KeyCount = 15;
constexpr double PauseGoal = 100; ///< nobody waits for it, but the next key comes behind it

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
    /// Milliseconds, the least first; what comes before the key does not count.
    std::vector<double> Times(const std::function<void()> &before, const std::function<void()> &key)
    {
        std::vector<double> times;
        for (int i = 0; i <= KeyCount; ++i) {
            before();
            times.push_back(Seconds(key) * 1000);
        }
        times.erase(times.begin());
        std::sort(times.begin(), times.end());
        return times;
    }
};

bool AidsAreOn(const Program &program)
{
    return program.settings.Flag(zelvane::Keys::LiveColours);
}

void TurnAllAids(Program &program, bool on)
{
#define ZELVANE_SAVE_AID(Type, Name, ...) program.settings.SaveFlag(zelvane::Keys::Name, on);
    ZELVANE_WRITING_KEYS(ZELVANE_SAVE_AID)
#undef ZELVANE_SAVE_AID
    program.window->Looks().ApplyAll();
}

/// Lets the program do what it does when nobody types for a while.
void Pause()
{
    QEventLoop loop;
    QTimer::singleShot(1500, &loop, &QEventLoop::quit);
    loop.exec();
}

double PauseBehindLetter(Typist &typist)
{
    return 1000 * Seconds([&] {
               typist.Key(Qt::Key_Z, {}, u"z"_s);
               Pause();
           });
}

enum class Sideways { Nothing, Scrolls, Wraps };

void Measure(Program &program, qsizetype size, bool accents, Sideways sideways, double goal)
{
    Typist typist{program};
    program.window->Documents().OpenFile(program.File(size, accents));
    typist.text.SetWordWrap(sideways == Sideways::Wraps);
    if (sideways == Sideways::Scrolls)
        typist.text.ReplaceRange(0, 0, u"a wide line "_s.repeated(100) + u'\n');
    // The lines are wrapped piece by piece while the program has nothing else to do.
    for (int quiet = 0; quiet < 50; ++quiet) {
        typist.text.viewport()->repaint();
        if (Seconds([] { QApplication::processEvents(); }) > 0.002)
            quiet = 0;
    }
    QApplication::clipboard()->setText(u"a1 oscil 10000, 440, 1 ; a line\n"_s);
    for (const bool end : {false, true}) {
        const qsizetype place = end ? typist.text.Length() : 0;
        typist.text.SetSelection(place, place);
        const auto report = [&](
                                const char *key, const std::function<void()> &press,
                                const std::function<void()> &before = [] {}) {
            const QString what = u"%1 MB%2%3%4%5, %6: %7"_s.arg(size / 1'000'000)
                                     .arg(accents ? u" with accents" : u"")
                                     .arg(sideways == Sideways::Wraps     ? u", wrapped"
                                          : sideways == Sideways::Scrolls ? u", wider than the view"
                                                                          : u"")
                                     .arg(TextAccessible::IsHeard() ? u", screen reader" : u"")
                                     .arg(AidsAreOn(program) ? u", all aids" : u"")
                                     .arg(end ? u"end" : u"beginning")
                                     .arg(QLatin1String(key));
            const std::vector<double> times = typist.Times(before, press);
            Goal(qPrintable(what), times[times.size() / 2], goal);
            if (times.back() > goal)
                std::printf("    the worst of %d: %.3f\n", KeyCount, times.back());
        };
        report("a letter", [&] { typist.Key(Qt::Key_X, {}, u"x"_s); });
        report("Backspace", [&] { typist.Key(Qt::Key_Backspace); });
        report("Enter", [&] { typist.Key(Qt::Key_Return, {}, u"\r"_s); });
        report("paste a line", [&] { typist.Key(Qt::Key_V, Qt::ControlModifier); });
        report("undo", [&] { typist.Key(Qt::Key_Z, Qt::ControlModifier); });
        report("redo", [&] { typist.Key(Qt::Key_Y, Qt::ControlModifier); });
        report("Left", [&] { typist.Key(Qt::Key_Left); });
        report("Delete", [&] { typist.Key(Qt::Key_Delete); });
        report(
            "a letter over a selection", [&] { typist.Key(Qt::Key_Y, {}, u"y"_s); },
            [&] { typist.Key(Qt::Key_Left, Qt::ShiftModifier); });
        if (AidsAreOn(program)) {
            Pause();
            Goal(end ? "the end: a letter, and the pause behind it"
                     : "the beginning: a letter, and the pause behind it",
                 PauseBehindLetter(typist), PauseGoal);
        }
    }
}

/// What the pause costs with all aids, with none, and with each alone.
void MeasurePauses(Program &program)
{
    constexpr int Pauses = 5;
    Typist typist{program};
    program.window->Documents().OpenFile(program.File(10'000'000, false));
    const auto report = [&](const char *aids) {
        program.window->Looks().ApplyAll();
        Pause();
        std::vector<double> times;
        for (int i = 0; i < Pauses; ++i)
            times.push_back(PauseBehindLetter(typist));
        std::sort(times.begin(), times.end());
        Goal(qPrintable(u"a letter, and the pause behind it: "_s + QLatin1String(aids)), times[Pauses / 2],
             PauseGoal);
    };
    TurnAllAids(program, true);
    report("all aids");
    TurnAllAids(program, false);
    report("no aids");
#define ZELVANE_MEASURE_AID(Type, Name, ...)                                                                 \
    program.settings.SaveFlag(zelvane::Keys::Name, true);                                                    \
    report(#Name);                                                                                           \
    program.settings.SaveFlag(zelvane::Keys::Name, false);
    ZELVANE_WRITING_KEYS(ZELVANE_MEASURE_AID)
#undef ZELVANE_MEASURE_AID
}

} // namespace

int main(int argc, char **argv)
{
    const OwnHome home;
    QApplication application(argc, argv);
    Program program;
    std::setvbuf(stdout, nullptr, _IOLBF, 0);
    if (argc > 1 && std::strcmp(argv[1], "pauses") == 0) {
        MeasurePauses(program);
        return 0;
    }
    const bool aidsOnly = argc > 1 && std::strcmp(argv[1], "aids") == 0;
    const bool quick = aidsOnly || (argc > 1 && std::strcmp(argv[1], "quick") == 0);
    if (!aidsOnly) {
        Measure(program, 10'000'000, false, Sideways::Nothing, 4);
        Measure(program, 10'000'000, true, Sideways::Nothing, 4);
        Measure(program, 10'000'000, false, Sideways::Wraps, 4);
        Measure(program, 10'000'000, true, Sideways::Scrolls, 4);
    }
    TurnAllAids(program, true);
    Measure(program, 10'000'000, false, Sideways::Nothing, 4);
    Measure(program, 10'000'000, true, Sideways::Nothing, 4);
    if (aidsOnly)
        return 0;
    TurnAllAids(program, false);
    TextAccessible::SetListener([](QAccessibleEvent &) {});
    Measure(program, 10'000'000, true, Sideways::Nothing, 4);
    if (!quick)
        Measure(program, 200'000'000, true, Sideways::Nothing, 16);
    TextAccessible::SetListener({});
    if (!quick) {
        Measure(program, 200'000'000, false, Sideways::Nothing, 16);
        Measure(program, 200'000'000, true, Sideways::Nothing, 16);
        Measure(program, 200'000'000, false, Sideways::Scrolls, 16);
        Measure(program, 200'000'000, false, Sideways::Wraps, 16);
    }
    return 0;
}
