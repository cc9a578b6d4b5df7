// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QtGlobal>
#include <string_view>

namespace zelvane
{

/// How a value is read. A Flag is a number or the word of a boolean; a NumericFlag must be a number; both are
/// true when they are not 0. Writers store "-1" or "0" (windows, menu checks), "1" or "0" (check boxes),
/// "True" or "False" (option buttons): readers take them all. A Colour is 0xBBGGRR or a system colour, as a
/// signed 32-bit number in decimal.
enum class SettingKind { Flag, NumericFlag, Number, Colour, Text };

/// Who writes a key: the window or dialog that uses it, or the Preferences dialog by the control of the same
/// name.
enum class KeyWriter { Owner, Preferences };

/// What all keys of the store have in common. A key is of one of the types below, which decides how it can be
/// read and written; this one is enough to remove a key or to ask for its text.
struct SettingKey {
    std::u16string_view stem; ///< the name; of a numbered key the part before the number
    SettingKind kind;
    KeyWriter writer = KeyWriter::Owner;
    int number = 0; ///< of a numbered key, from 1

    QString Name() const;

protected:
    constexpr SettingKey(std::u16string_view name, SettingKind keyKind, KeyWriter keyWriter)
        : stem(name), kind(keyKind), writer(keyWriter)
    {
    }
};

/// A bare key has no default of its own: only its reader knows one, such as a control's present value.
struct BareFlagKey : SettingKey {
    constexpr explicit BareFlagKey(std::u16string_view name, KeyWriter keyWriter = KeyWriter::Owner,
                                   SettingKind keyKind = SettingKind::Flag)
        : SettingKey(name, keyKind, keyWriter)
    {
    }
};
struct BareNumberKey : SettingKey {
    constexpr explicit BareNumberKey(std::u16string_view name, KeyWriter keyWriter = KeyWriter::Owner)
        : SettingKey(name, SettingKind::Number, keyWriter)
    {
    }
};
struct BareTextKey : SettingKey {
    constexpr explicit BareTextKey(std::u16string_view name, KeyWriter keyWriter = KeyWriter::Owner)
        : SettingKey(name, SettingKind::Text, keyWriter)
    {
    }
};

struct FlagKey : BareFlagKey {
    bool fallback;
    constexpr FlagKey(std::u16string_view name, bool keyFallback, KeyWriter keyWriter = KeyWriter::Owner,
                      SettingKind keyKind = SettingKind::Flag)
        : BareFlagKey(name, keyWriter, keyKind), fallback(keyFallback)
    {
    }
};
struct NumericFlagKey : FlagKey {
    constexpr NumericFlagKey(std::u16string_view name, bool keyFallback,
                             KeyWriter keyWriter = KeyWriter::Owner)
        : FlagKey(name, keyFallback, keyWriter, SettingKind::NumericFlag)
    {
    }
};
struct NumberKey : BareNumberKey {
    double fallback;
    constexpr NumberKey(std::u16string_view name, double keyFallback, KeyWriter keyWriter = KeyWriter::Owner)
        : BareNumberKey(name, keyWriter), fallback(keyFallback)
    {
    }
};
struct TextKey : BareTextKey {
    std::u16string_view fallback;
    constexpr TextKey(std::u16string_view name, std::u16string_view keyFallback,
                      KeyWriter keyWriter = KeyWriter::Owner)
        : BareTextKey(name, keyWriter), fallback(keyFallback)
    {
    }
};
/// A colour is 0xBBGGRR, or a system colour with the top bit set.
struct ColourKey : SettingKey {
    quint32 fallback;
    constexpr ColourKey(std::u16string_view name, quint32 keyFallback, KeyWriter keyWriter = KeyWriter::Owner)
        : SettingKey(name, SettingKind::Colour, keyWriter), fallback(keyFallback)
    {
    }
};

/// A row of keys, numbered from 1: `Keys::Band(3)` is the key "Band3".
template <typename Key> struct Numbered {
    Key first;

    template <typename... Arguments>
    constexpr explicit Numbered(std::u16string_view name, Arguments... arguments) : first(name, arguments...)
    {
        first.number = 1;
    }
    constexpr Key operator()(int number) const
    {
        Key key = first;
        key.number = number;
        return key;
    }
};

} // namespace zelvane

/// The keys of a part of the program stand in a list of their own header, one row for each key:
/// `SETTING(type, name, default, writer)`, without the default for a bare key. The list is the declaration:
/// with this macro it makes the constants, and others make the list of all keys from it.
#define ZELVANE_DECLARE_SETTING(Type, Name, ...)                                                             \
    inline constexpr Type Name{std::u16string_view(u"" #Name) __VA_OPT__(, ) __VA_ARGS__};
