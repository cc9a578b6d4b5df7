// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <QByteArray>
#include <QString>
#include <random>
#include <vector>

#ifdef __GLIBC__
#include <malloc.h>
#endif

namespace zelvane::bench
{

/// Orchestra text of about so many bytes: instruments, opcodes, numbers, strings and comments in the mixture
/// of ordinary pieces, the same at each run. With `accents` every tenth comment holds characters of two to
/// four bytes.
inline QByteArray Orchestra(qsizetype bytes, bool accents = false)
{
    static const char *const opcodes[] = {"oscil", "linen", "expseg", "reverb", "butterlp",
                                          "out",   "outs",  "line",   "vco2",   "moogladder",
                                          "randi", "table", "cpspch", "pluck",  "foscil"};
    static const char *const names[] = {"asig", "kenv", "ifreq",  "a1",  "aout",
                                        "kcps", "iamp", "gaverb", "kndx"};
    std::mt19937 random(1);
    const auto pick = [&](const auto &list) { return list[random() % std::size(list)]; };
    QByteArray text;
    text.reserve(bytes + 200);
    for (int instrument = 1; text.size() < bytes; ++instrument) {
        text += "instr " + QByteArray::number(instrument % 999) + " ; voice\n";
        for (int line = 0; line < 12; ++line) {
            text += QByteArray("  ") + pick(names) + " " + pick(opcodes) + " " + pick(names) + ", " +
                    QByteArray::number(int(random() % 20000)) + ", p" + QByteArray::number(int(random() % 9));
            if (line % 3 == 0)
                text += accents && line % 9 == 0
                            ? " ; le son \xC3\xA9tir\xC3\xA9 \xE2\x86\x92 \xF0\x9D\x84\x9E"
                            : " ; the sound of this line";
            text += '\n';
        }
        text += "  Sname strcpy \"file name.wav\"\n  outs asig*$GAIN, asig\n#define GAIN #0.5#\nendin\n\n";
    }
    text.truncate(bytes);
    while (!text.isEmpty() && (uchar(text.back()) & 0x80))
        text.chop(1);
    return text;
}

/// The median time in milliseconds of some runs of `work`, which times itself and gives seconds.
template <typename Work> double MedianMs(int runs, Work work)
{
    std::vector<double> times;
    for (int run = 0; run < runs; ++run)
        times.push_back(work());
    std::sort(times.begin(), times.end());
    return times[times.size() / 2] * 1000;
}

/// Processor seconds that `work` takes: other programs on the machine do not count.
template <typename Work> double Seconds(Work work)
{
    const std::clock_t start = std::clock();
    work();
    return double(std::clock() - start) / CLOCKS_PER_SEC;
}

/// Makes every large buffer come fresh from the system, as in an editor that has just been started. Without
/// it the C library hands each run the memory that the run before has touched.
inline void UseFreshMemory()
{
#ifdef __GLIBC__
    mallopt(M_MMAP_THRESHOLD, 128 * 1024);
#endif
}

/// One line of the table of goals.
inline void Goal(const char *what, double value, double goal)
{
    std::printf("%-72s %7.3f  goal %5.2f  %s\n", what, value, goal, value <= goal ? "reached" : "MISSED");
}

} // namespace zelvane::bench
