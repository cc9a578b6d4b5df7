// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/stylerun.h"

#include <ostream>
#include <QByteArray>
#include <QString>

/// GoogleTest prints Qt's strings through these.
QT_BEGIN_NAMESPACE
inline void PrintTo(const QString &text, std::ostream *out)
{
    QString shown = text;
    shown.replace(QLatin1Char('\r'), QStringLiteral("\\r")).replace(QLatin1Char('\n'), QStringLiteral("\\n"));
    shown.replace(QLatin1Char('\t'), QStringLiteral("\\t"));
    *out << '"' << shown.toUtf8().constData() << '"';
}
inline void PrintTo(const QByteArray &bytes, std::ostream *out)
{
    *out << '"' << bytes.toPercentEncoding(" !\"#$&'()*+,/:;<=>?@[]").constData() << '"';
}
QT_END_NAMESPACE

namespace zelvane
{
inline void PrintTo(const StyleRun &run, std::ostream *out)
{
    *out << '[' << run.start << " +" << run.length << " class " << int(run.style) << ']';
}
} // namespace zelvane
