// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/oracle/statementoracle.h"
#include "fuzz/fuzzcheck.h"
#include "fuzz/fuzzinput.h"
#include "instruments/statement.h"
#include "platform/runtimeerror.h"

#include <optional>

using namespace zelvane;

namespace
{

std::optional<int> InstrumentAt(const QString &text, qsizetype caret)
{
    try {
        return StatementInstrument(text, caret);
    } catch (const RunTimeError &) {
        return std::nullopt;
    }
}

} // namespace

/// The score statement at a caret, read and written beside its loops.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    fuzz::Input input(data, size);
    const int place = input.Number(0, 65535);
    const QString text = input.Text();
    const QString value = input.Text();
    const qsizetype caret = fuzz::Place(place, text.size());

    oracle::ScoreStatement loop{.s = text, .caret = caret};
    fuzz::Expect("instrument", InstrumentAt(text, caret) == loop.Number(), text, caret);
    const std::optional<Statement> statement = ParseStatement(text, caret);
    fuzz::ExpectSame("statement", statement.has_value(), loop.Parse(), text, caret);
    if (statement) {
        fuzz::ExpectSame("values", statement->values, loop.values, text, caret);
        fuzz::ExpectSame("start", statement->range.start, loop.rangeStart, text, caret);
        fuzz::ExpectSame("end", statement->range.end, loop.rangeEnd, text, caret);
        const QString saved = text.mid(statement->range.start, statement->range.Length());
        fuzz::ExpectSame("its own values", WriteStatement(saved, statement->values), saved, text, caret);
    }
    const QStringList values{value, QString(), value + u'1'};
    fuzz::ExpectSame("written", WriteStatement(text, values), oracle::ScoreStatement::Write(text, values),
                     text, value);
    return 0;
}
