// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/runtimeerror.h"

#include <functional>
#include <optional>
#include <QString>
#include <QStringList>
#include <utility>
#include <vector>

namespace zelvane::oracle
{

using MacroTable = std::vector<std::pair<QString, QString>>;
/// What a macro name, in upper case, stands for; no value for an unknown one.
using MacroLookup = std::function<std::optional<QString>(const QString &name)>;

/// What the plain loop ended with.
struct MacroEnd {
    enum class How { Done, Failed, InvalidCall, Overflow, GaveUp };
    How how = How::Done;
    QString text = {};
    QString failed = {}; ///< the macro that was empty
};

/// The expansion as a loop that builds the text anew for each macro; positions count from 1. Gives up after
/// `patience` macros.
inline MacroEnd ExpandPresetMacros(QString text, const MacroLookup &lookup, int patience = 1 << 30)
{
    static const QStringList quotedNames =
        QStringLiteral("WAVE AIFF LOG ORCHESTRA SCORE SOUNDINPUT MIDI DOCUMENT").split(u' ');
    int i = 1;
    while (i <= text.size()) {
        if (i > 32767)
            return {MacroEnd::How::Overflow};
        if (text[i - 1] != u'$') {
            i = i + 1;
            continue;
        }
        int j = i + 1;
        while (j <= text.size() && text[j - 1] != u'$')
            j = j + 1;
        const QString name = text.mid(i, j - i - 1).toUpper();
        const std::optional<QString> known = lookup(name);
        if (!known) {
            i = i + 1;
            continue;
        }
        QString value = *known;
        if (value.isEmpty() && name != QStringLiteral("CLIP"))
            return {MacroEnd::How::Failed, text, name};
        if (quotedNames.contains(name)) {
            QString trimmed = value;
            while (trimmed.startsWith(u' '))
                trimmed = trimmed.mid(1);
            while (trimmed.endsWith(u' '))
                trimmed.chop(1);
            if (value.contains(u'"'))
                value = u'"' + value.replace(QStringLiteral("\""), QStringLiteral("\"\"")) + u'"';
            else if (trimmed.contains(u' '))
                value = u'"' + value + u'"';
        }
        if (j > text.size())
            return {MacroEnd::How::InvalidCall};
        text = text.left(i - 1) + value + text.mid(j);
        i = i + 1;
        if (--patience == 0)
            return {MacroEnd::How::GaveUp};
    }
    return {MacroEnd::How::Done, text};
}

inline MacroEnd ExpandPresetMacros(const QString &text, const MacroTable &table, int patience = 1 << 30)
{
    const auto lookup = [&table](const QString &name) -> std::optional<QString> {
        for (const auto &row : table) {
            if (row.first == name)
                return row.second;
        }
        return std::nullopt;
    };
    return ExpandPresetMacros(text, MacroLookup(lookup), patience);
}

} // namespace zelvane::oracle
