// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/oracle/flagtable.h"
#include "fuzz/fuzzcheck.h"
#include "fuzz/fuzzdesktop.h"
#include "fuzz/fuzzinput.h"
#include "platform/parameters.h"
#include "run/flagline.h"
#include "run/flagtable.h"

using namespace zelvane;

namespace
{

void CheckSame(const std::vector<FlagRow> &found, const std::vector<FlagRow> &expected, const QString &text)
{
    fuzz::ExpectSame("rows", found.size(), expected.size(), text);
    for (size_t i = 0; i < found.size(); ++i) {
        fuzz::ExpectSame("flag", found[i].flag, expected[i].flag, text);
        fuzz::ExpectSame("type", found[i].type, expected[i].type, text);
        fuzz::ExpectSame("description", found[i].description, expected[i].description, text);
    }
}

/// A table in its form, with any words: a flag, its type, a tab and a description on each line.
QString WholeTable(const QString &text)
{
    QString table = QStringLiteral(" ");
    for (QString line : text.split(u'\n')) {
        line.remove(u'\r');
        while (line.startsWith(u' ') || line.startsWith(u'\t'))
            line = line.mid(1);
        if (!line.isEmpty())
            table +=
                line + (line.contains(u'\t') ? QString() : QStringLiteral("\t")) + QStringLiteral("\r\n");
    }
    return table;
}

bool QuotesArePaired(const QString &text)
{
    return text.count(u'"') % 2 == 0;
}

} // namespace

/// The flag table and the line of flags, beside their loops.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    fuzz::Input input(data, size);
    const quint64 checks = quint64(input.Byte()) << 8 | input.Byte();
    const QString text = input.Text();
    const QString answer = input.Text();
    const QString before = input.Text();
    const QString after = input.Text();

    LoadFlagTable(text); // whatever the form
    const QString table = WholeTable(text);
    const std::vector<FlagRow> rows = LoadFlagTable(table);
    CheckSame(rows, oracle::LoadFlagTable(table), table);

    fuzz::AnsweringDesktop desktop;
    desktop.input = answer;
    std::vector<FlagChoice> choices = FlagChoices(rows.empty() ? ShippedFlagTable() : rows);
    for (size_t i = 0; i < choices.size(); ++i) {
        const bool check = checks >> i % 16 & 1;
        SetFlagChecked(choices[i], check, desktop);
        const bool asks = !choices[i].row.type.isEmpty();
        fuzz::ExpectSame("checked", choices[i].checked, check && (!asks || !answer.isEmpty()), table, i);
        fuzz::ExpectSame("value", choices[i].value, asks && choices[i].checked ? answer : choices[i].row.type,
                         table, i);
    }
    const QString line = FlagLine(choices);
    fuzz::ExpectSame("line", line, oracle::FlagLine(choices), table, answer, checks);
    fuzz::ExpectSame("accepted", AcceptFlagLine(line, desktop), !line.isEmpty());

    // Flags that are put into a line are arguments of their own, and so is what stands beside them.
    const QString put = FlagsBetween(before, line, after);
    fuzz::Expect("flags are put", put.contains(line), before, line, after);
    if (QuotesArePaired(before) && QuotesArePaired(line) && !line.isEmpty())
        fuzz::ExpectSame("arguments", SplitParameters(before + put + after),
                         SplitParameters(before) + SplitParameters(line) + SplitParameters(after), before,
                         line, after);
    return 0;
}
