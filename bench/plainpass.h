// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <algorithm>
#include <benchmark/benchmark.h>
#include <cstring>
#include <ctime>
#include <QString>
#include <QStringView>
#include <vector>

namespace zelvane::bench
{

/// The plain pass that the scanners are measured by.
inline qsizetype CountBelow33(QStringView text)
{
    qsizetype count = 0;
    for (const char16_t *at = text.utf16(), *end = at + text.size(); at != end; ++at)
        count += *at < 33;
    return count;
}

/// Processor time: what else the machine does must not count.
inline double Seconds()
{
    return double(std::clock()) / CLOCKS_PER_SEC;
}

inline double Median(std::vector<double> values)
{
    std::nth_element(values.begin(), values.begin() + qsizetype(values.size() / 2), values.end());
    return values[values.size() / 2];
}

/// Times the work, and in turn with it the plain pass and a copy of the same text; prints the medians'
/// ratios. Bytes are those of the file.
template <typename Work> void Measure(benchmark::State &state, const QString &text, Work work)
{
    std::vector<double> works, counts, copies;
    QString target(text.size(), Qt::Uninitialized);
    for (auto _ : state) {
        const double start = Seconds();
        work();
        const double worked = Seconds();
        benchmark::DoNotOptimize(CountBelow33(text));
        const double counted = Seconds();
        std::memcpy(target.data(), text.constData(), size_t(text.size()) * sizeof(QChar));
        benchmark::ClobberMemory();
        const double copied = Seconds();
        works.push_back(worked - start);
        counts.push_back(counted - worked);
        copies.push_back(copied - counted);
        state.SetIterationTime(works.back());
    }
    state.SetBytesProcessed(state.iterations() * text.size());
    const double median = Median(works);
    state.counters["median_ms"] = median * 1e3;
    state.counters["count_ms"] = Median(counts) * 1e3;
    state.counters["memcpy_ms"] = Median(copies) * 1e3;
    state.counters["times_count"] = median / Median(counts);
    state.counters["times_memcpy"] = median / Median(copies);
}

} // namespace zelvane::bench
