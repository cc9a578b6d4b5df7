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
    if (unit < Beyond)
        return unit >= u'A' && unit <= u'Z' ? char16_t(unit + (u'a' - u'A')) : unit;
    switch (unit) { // those with an ASCII letter as their other case
    case u'\u0131':
        return u'i';
    case u'\u017f':
        return u's';
    case u'\u212a':
        return u'k';
    default:
        return Beyond;
    }
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
            return Folded(Decoded());
        else
            return Folded(*at);
    }
    /// A character of UTF-8 with up to three bytes; of one with four only that it is outside ASCII.
    char16_t Decoded() const
    {
        const auto byte = [this](qsizetype i) { return i < Left() ? uint(uchar(at[i])) : 0U; };
        if (byte(0) < Beyond)
            return char16_t(byte(0));
        if ((byte(0) & 0xE0) == 0xC0)
            return char16_t((byte(0) & 0x1F) << 6 | (byte(1) & 0x3F));
        if ((byte(0) & 0xF0) == 0xE0)
            return char16_t((byte(0) & 0x0F) << 12 | (byte(1) & 0x3F) << 6 | (byte(2) & 0x3F));
        return Beyond;
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
