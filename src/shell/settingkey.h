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

/// Where a key stands: in section "Options", or in the section of a record, such as a preset's.
enum class KeySection { Options, Record };

/// What all keys of the store have in common.
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

/// A key of a section: enough to remove it or to ask for its text.
template <KeySection section> struct SectionKey : SettingKey {
protected:
    using SettingKey::SettingKey;
};

/// A key of a section and a kind: enough to write it. How it is read is told by the two types made of it,
/// neither of which is the other: no key with a default can be read with a second one.
template <KeySection section, SettingKind keyKind> struct KindKey : SectionKey<section> {
protected:
    constexpr KindKey(std::u16string_view name, KeyWriter keyWriter)
        : SectionKey<section>(name, keyKind, keyWriter)
    {
    }
};

template <KeySection section, SettingKind keyKind, typename Value>
struct DefaultKey : KindKey<section, keyKind> {
    Value fallback;
    constexpr DefaultKey(std::u16string_view name, Value keyFallback, KeyWriter keyWriter = KeyWriter::Owner)
        : KindKey<section, keyKind>(name, keyWriter), fallback(keyFallback)
    {
    }
};

/// A bare key has no default of its own: only its reader knows one, such as a control's present value.
template <KeySection section, SettingKind keyKind> struct BareKey : KindKey<section, keyKind> {
    constexpr explicit BareKey(std::u16string_view name, KeyWriter keyWriter = KeyWriter::Owner)
        : KindKey<section, keyKind>(name, keyWriter)
    {
    }
};

using OptionKey = SectionKey<KeySection::Options>;
template <SettingKind kind> using OptionKeyOf = KindKey<KeySection::Options, kind>;

using FlagKey = DefaultKey<KeySection::Options, SettingKind::Flag, bool>;
using NumberKey = DefaultKey<KeySection::Options, SettingKind::Number, double>;
using TextKey = DefaultKey<KeySection::Options, SettingKind::Text, std::u16string_view>;
using ColourKey = DefaultKey<KeySection::Options, SettingKind::Colour, quint32>;
using BareFlagKey = BareKey<KeySection::Options, SettingKind::Flag>;
using BareNumberKey = BareKey<KeySection::Options, SettingKind::Number>;
using BareTextKey = BareKey<KeySection::Options, SettingKind::Text>;

using RecordKey = SectionKey<KeySection::Record>;
template <SettingKind kind> using RecordKeyOf = KindKey<KeySection::Record, kind>;

using RecordFlagKey = DefaultKey<KeySection::Record, SettingKind::Flag, bool>;
using RecordNumberKey = DefaultKey<KeySection::Record, SettingKind::Number, double>;
using RecordTextKey = DefaultKey<KeySection::Record, SettingKind::Text, std::u16string_view>;
using BareRecordTextKey = BareKey<KeySection::Record, SettingKind::Text>;

struct NumericFlagKey : FlagKey {
    constexpr NumericFlagKey(std::u16string_view name, bool keyFallback,
                             KeyWriter keyWriter = KeyWriter::Owner)
        : FlagKey(name, keyFallback, keyWriter)
    {
        kind = SettingKind::NumericFlag;
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
