// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/oracle/insertsoracle.h"
#include "fuzz/fuzzcheck.h"
#include "fuzz/fuzzinput.h"
#include "platform/runtimeerror.h"
#include "texttools/inserts.h"

#include <QString>
#include <QtGlobal>

using namespace zelvane;

namespace
{

constexpr qint64 Failed = 1LL << 40; ///< no rate

qint64 NextRate(qint32 sampleRate, qint32 controlRate, int direction)
{
    try {
        return NextControlRate(sampleRate, controlRate, direction);
    } catch (const RunTimeError &) {
        return Failed;
    }
}

} // namespace

/// The texts of the Insert menu, beside their loops.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    fuzz::Input input(data, size);
    const int rate = input.Number(-100, 5000), present = input.Number(-600, 6000);
    const int direction = input.Bit() ? 1 : -1;
    fuzz::ExpectSame("rate", NextRate(rate, present, direction),
                     test::oracle::NextControlRate(rate, present, direction).value_or(Failed), rate, present,
                     direction);

    const QString arguments = input.Text();
    fuzz::ExpectSame("macro", MacroText({}, arguments, {}),
                     QStringLiteral("#define ") + test::oracle::MacroArguments(arguments) +
                         QStringLiteral(" #;Replacement text here#"),
                     arguments);

    const int width = input.Number(-2, 100);
    const QString words = input.Text();
    const QString separated = test::oracle::WithLineSeparation({}, 0, QLatin1Char('-'), width, words).first;
    fuzz::ExpectSame("separator", SeparatorLine(QStringLiteral("-"), width, words),
                     separated.sliced(1, separated.size() - 2), width, words);

    const QString folder = input.Text(), below = input.Text();
    const QString path = folder + QLatin1Char('/') + below;
    const QString name = RelativeTo(folder, path);
    fuzz::Expect("a name ends its path", path.endsWith(name) && !name.isEmpty(), folder, path, name);
    if (!folder.isEmpty() && !below.isEmpty() && below[0] != QLatin1Char('/') &&
        below[0] != QLatin1Char('\\'))
        fuzz::ExpectSame("name", name, below, folder);
    return 0;
}
