// SPDX-License-Identifier: GPL-3.0-or-later
#include "fuzz/fuzzdesktop.h"
#include "instruments/instrclass.h"
#include "instruments/instrgui.h"
#include "instruments/zelvanedata.h"
#include "plainpass.h"

#include <benchmark/benchmark.h>
#include <cstdlib>
#include <memory>
#include <pugixml.hpp>
#include <QFile>
#include <QString>
#include <QTemporaryDir>
#include <vector>

using namespace Qt::Literals::StringLiterals;

// The store of two thousand instruments beside its parser alone on the same file, and the search for an
// instrument beside a search for the word.

namespace zelvane::bench
{
namespace
{

constexpr qint16 Count = 2000;
constexpr qint16 FieldCount = 20;

void Describe(Instruments &instruments)
{
    for (qint16 number = 1; number <= Count; ++number) {
        auto instrument = std::make_unique<InstrClass>();
        instrument->number = number;
        instrument->nome = u"Instrument "_s + QString::number(number);
        for (qint16 p = 1; p <= FieldCount; ++p) {
            pClass &field = instrument->addP(p);
            field.nome = u"Parameter "_s + QString::number(p);
            field.description = u"What %1 does & \"how\""_s.arg(p);
            field.group = u"Tone"_s;
            field.unit = u"Hz"_s;
            field.variable = u"ifreq"_s;
            field.min = .5;
            field.max = 20000;
        }
        instruments.Add(InstrumentKey(number), std::move(instrument));
    }
}

void LoadAndStore(benchmark::State &state)
{
    const QTemporaryDir folder;
    SettingsStore settings(folder.filePath(u"settings"_s));
    fuzz::Editor editor(settings);
    editor.document.DocumentKind = FileKind::Orchestra;
    editor.document.CurrentFile = folder.filePath(u"song.orc"_s);
    editor.desktop.answer = BoxAnswer::Yes;
    Instruments all;
    Describe(all);
    if (!StoreDataSection(editor.context, InstrumentsToXml(all, editor.desktop), false))
        std::abort();
    const QByteArray path = QFile::encodeName(folder.filePath(u"song.xml"_s));
    const QByteArray copy = QFile::encodeName(folder.filePath(u"copy.xml"_s));

    std::vector<double> loads, stores, parsers;
    for (auto _ : state) {
        const double start = Seconds();
        Instruments read;
        LoadInstruments(editor.context, read);
        const double loaded = Seconds();
        if (read.Count() != Count ||
            !StoreDataSection(editor.context, InstrumentsToXml(read, editor.desktop), false))
            std::abort();
        const double stored = Seconds();
        pugi::xml_document document;
        if (!document.load_file(path.constData()) || !document.save_file(copy.constData()))
            std::abort();
        parsers.push_back(Seconds() - stored);
        loads.push_back(loaded - start);
        stores.push_back(stored - loaded);
        state.SetIterationTime(stored - start);
    }
    state.counters["load_ms"] = Median(loads) * 1e3;
    state.counters["store_ms"] = Median(stores) * 1e3;
    state.counters["pugixml_ms"] = Median(parsers) * 1e3;
    state.counters["times_pugixml"] = (Median(loads) + Median(stores)) / Median(parsers);
}
BENCHMARK(LoadAndStore)->UseManualTime()->Iterations(15)->Unit(benchmark::kMillisecond);

void FindStatement(benchmark::State &state)
{
    QString text;
    while (text.size() < 10'000'000)
        text += u"instr 1 ; an instrument\n asig oscil p4, p5, 1\n out asig\nendin\n"_s;
    const QString word = u"instr"_s;
    std::vector<double> finds, searches;
    for (auto _ : state) {
        const double start = Seconds();
        benchmark::DoNotOptimize(FindInstrStatement(text, 2));
        const double found = Seconds();
        qsizetype hits = 0;
        for (qsizetype at = 0; (at = text.indexOf(word, at)) >= 0; at += word.size())
            ++hits;
        benchmark::DoNotOptimize(hits);
        searches.push_back(Seconds() - found);
        finds.push_back(found - start);
        state.SetIterationTime(finds.back());
    }
    state.counters["median_ms"] = Median(finds) * 1e3;
    state.counters["search_ms"] = Median(searches) * 1e3;
    state.counters["times_search"] = Median(finds) / Median(searches);
}
BENCHMARK(FindStatement)->UseManualTime()->Iterations(15)->Unit(benchmark::kMillisecond);

} // namespace
} // namespace zelvane::bench

BENCHMARK_MAIN();
