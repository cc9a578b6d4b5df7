// SPDX-License-Identifier: GPL-3.0-or-later

// What the copy of unsaved text costs whoever types on: keys in the real window, at the ends and in the
// middle of ten megabytes, for some time with copies and without; the longest that one of them has waited, by
// the clock and by the processor time of the window's thread.

#include "platform/ui/textcontrol.h"
#include "windowbench.h"

#include <array>
#include <chrono>
#include <cstdio>
#include <ctime>
#include <QApplication>
#include <QKeyEvent>
#include <QThread>

using namespace zelvane;
using namespace zelvane::bench;
using namespace Qt::Literals::StringLiterals;

namespace
{

constexpr std::chrono::seconds Long{40}; // more than one copy of a large text
constexpr int KeyEveryMs = 20;

double ThreadMs()
{
    timespec now = {};
    ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return double(now.tv_sec) * 1e3 + double(now.tv_nsec) / 1e6;
}

struct Worst {
    double clock = 0;
    double processor = 0;
};

/// Types for a while and waits for each key to be painted.
Worst Type(Program &program, bool copies)
{
    program.settings.SaveFlag(Keys::SafetyCopy, copies);
    program.window->Documents().NewFile(FileKind::Other, {});
    program.window->Documents().OpenFile(program.File(10'000'000));
    auto &text = *program.window->findChild<TextControl *>(u"TxtEdit"_s);
    const std::array<qsizetype, 3> places = {0, text.Length() / 2, text.Length()};
    Worst worst;
    int keys = 0;
    using Clock = std::chrono::steady_clock;
    for (const auto begun = Clock::now(); Clock::now() - begun < Long; ++keys) {
        if (keys % 50 == 0) {
            const qsizetype place = places[size_t(keys / 50) % places.size()];
            text.SetSelection(place, place);
            text.viewport()->repaint();
        }
        const auto start = Clock::now();
        const double processor = ThreadMs();
        QApplication::processEvents(); // what stood before the key
        QKeyEvent press(QEvent::KeyPress, Qt::Key_X, {}, u"x"_s);
        QApplication::sendEvent(&text, &press);
        text.viewport()->repaint();
        if (keys >= 50) {
            worst.processor = std::max(worst.processor, ThreadMs() - processor);
            worst.clock = std::max(worst.clock,
                                   std::chrono::duration<double, std::milli>(Clock::now() - start).count());
        }
        QThread::msleep(KeyEveryMs);
    }
    return worst;
}

} // namespace

int main(int argc, char **argv)
{
    const OwnHome home;
    QApplication application(argc, argv);
    Program program;
    const Worst without = Type(program, false);
    const Worst with = Type(program, true);
    std::printf(
        "the longest key without copies %.3f ms (processor %.3f), with copies %.3f ms (processor %.3f)\n",
        without.clock, without.processor, with.clock, with.processor);
    Goal("10 MB: a key is later by, ms of the processor", with.processor - without.processor, 16);
    Goal("10 MB: a key is later by, ms of the clock (an idle machine)", with.clock - without.clock, 16);
    return 0;
}
