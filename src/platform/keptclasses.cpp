// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/keptclasses.h"

#include <algorithm>
#include <QChar>

namespace zelvane
{

namespace
{

constexpr char16_t Beyond = 0x80; ///< stands for every character outside ASCII

bool GoesOn(char unit)
{
    return (uchar(unit) & 0xC0) == 0x80;
}

bool GoesOn(char16_t unit)
{
    return QChar::isLowSurrogate(unit);
}

/// A character as far as it is compared: letters in lower case.
char16_t Folded(char16_t unit)
{
    if (unit >= Beyond)
        return Beyond;
    return unit >= u'A' && unit <= u'Z' ? char16_t(unit + (u'a' - u'A')) : unit;
}

bool IsMark(char16_t folded)
{
    return folded == u' ' || folded == u'\t' || folded == u'\n' || folded == u';' || folded == u'/' ||
           folded == u'*';
}

/// A text from character to character.
template <typename Unit> struct Walk {
    const Unit *at;
    const Unit *end;

    bool AtEnd() const { return at == end; }
    qsizetype Left() const { return end - at; }
    char16_t Character() const
    {
        if constexpr (sizeof(Unit) == 1)
            return Folded(uchar(*at));
        else
            return Folded(*at);
    }
    void Next()
    {
        ++at;
        while (at != end && GoesOn(*at))
            ++at;
    }
};

/// How many characters of one unit both texts have in common from here on.
template <typename Unit> qsizetype Common(const Walk<Unit> &from, const Walk<Unit> &to)
{
    const auto lower = [](Unit unit) {
        return unit >= Unit('A') && unit <= Unit('Z') ? Unit(unit + ('a' - 'A')) : unit;
    };
    const auto isPlain = [](Unit unit) { return sizeof(Unit) == 1 ? unit >= 0 : unit < Beyond; };
    const qsizetype most = std::min(from.Left(), to.Left());
    qsizetype same = 0;
    while (same < most && lower(from.at[same]) == lower(to.at[same]) && isPlain(to.at[same]))
        ++same;
    return same;
}

template <typename Unit>
QByteArray Kept(Walk<Unit> from, const char *classes, Walk<Unit> to, qsizetype length, char before)
{
    QByteArray kept(length, Qt::Uninitialized);
    char *out = kept.data();
    const Unit *const first = from.at;
    char current = before;
    while (!to.AtEnd()) {
        if (const qsizetype same = Common(from, to); same > 0) {
            out = std::copy_n(classes + (from.at - first), same, out);
            current = out[-1];
            from.at += same;
            to.at += same;
            continue;
        }
        const char16_t come = to.Character();
        const char16_t old = from.AtEnd() ? u' ' : from.Character();
        if (!from.AtEnd() && come == old) {
            current = classes[from.at - first];
            from.Next();
        } else if (!from.AtEnd() && IsMark(old) && !(IsMark(come) && to.Left() > from.Left())) {
            from.Next();
            continue;
        } else if (!IsMark(come)) {
            return {};
        }
        const Unit *const start = to.at;
        to.Next();
        out = std::fill_n(out, to.at - start, current);
    }
    while (!from.AtEnd()) {
        if (!IsMark(from.Character()))
            return {};
        from.Next();
    }
    return kept;
}

} // namespace

QByteArray KeptClasses(QByteArrayView oldText, QByteArrayView oldClasses, QByteArrayView newText, char before)
{
    return Kept(Walk<char>{oldText.begin(), oldText.end()}, oldClasses.data(),
                Walk<char>{newText.begin(), newText.end()}, newText.size(), before);
}

QByteArray KeptClasses(QStringView oldText, QByteArrayView oldClasses, QStringView newText, char before)
{
    return Kept(Walk<char16_t>{oldText.utf16(), oldText.utf16() + oldText.size()}, oldClasses.data(),
                Walk<char16_t>{newText.utf16(), newText.utf16() + newText.size()}, newText.size(), before);
}

} // namespace zelvane
