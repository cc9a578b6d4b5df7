// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdio>
#include <cstdlib>
#include <QDebug>
#include <QString>

namespace zelvane::fuzz
{

/// Ends the program, which the fuzzer reports as a crash, with what was wrong and what it was wrong for.
template <typename... Given> [[noreturn]] void Fail(const char *what, const Given &...given)
{
    QString report;
    QDebug out(&report);
    (..., (out << "\n    " << given));
    std::fprintf(stderr, "FAILED: %s%s\n", what, report.toUtf8().constData());
    std::abort();
}

/// Fails unless `found` is `expected`. `given` tells what they were made from.
template <typename Found, typename Expected, typename... Given>
void ExpectSame(const char *what, const Found &found, const Expected &expected, const Given &...given)
{
    if (!(found == expected)) [[unlikely]]
        Fail(what, "found", found, "expected", expected, "given", given...);
}

template <typename... Given> void Expect(const char *what, bool holds, const Given &...given)
{
    if (!holds) [[unlikely]]
        Fail(what, given...);
}

} // namespace zelvane::fuzz
