// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/oracle/profileoracle.h"
#include "fuzz/fuzzcheck.h"
#include "fuzz/fuzzinput.h"
#include "fuzz/fuzzstart.h"
#include "platform/profilefile.h"

#include <QFile>

using namespace zelvane;

namespace
{

QByteArray Content(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void CheckSame(const ProfileFile &file, const oracle::ProfileSections &expected, const QByteArray &given)
{
    QStringList names;
    for (const oracle::ProfileSection &section : expected) {
        names.append(section.name);
        const auto entries = file.Entries(section.name);
        fuzz::ExpectSame("entries", entries, section.entries, section.name, given);
        for (const auto &[key, value] : section.entries)
            fuzz::ExpectSame("value", file.Value(section.name, key).value_or(QString()), value, section.name,
                             key, given);
    }
    fuzz::ExpectSame("sections", file.SectionNames(), names, given);
}

} // namespace

/// A settings file that a person has written, and writes to it, alone or in one step: what it holds is what a
/// reader line by line finds, and what nobody has written over stays.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    enum { Set, SetAnother, RemoveKey, RemoveSection, Replace };

    static const QString path = fuzz::WorkFolder() + QStringLiteral("/profile");
    fuzz::Input input(data, size);
    const bool inOneStep = input.Number(0, 3) != 0; // the faster way
    const int writes = input.Number(0, 4);
    struct Write {
        int kind;
        QString section, key, value;
    };
    std::vector<Write> all;
    for (int i = 0; i < writes; ++i) {
        const int kind = input.Number(Set, Replace);
        const QString section = input.Text(), key = input.Text();
        all.push_back({kind, section, key, kind == Set || kind == Replace ? input.Text() : section});
    }
    const QByteArray bytes = input.Bit() ? input.Text().toUtf8() : input.Rest();
    {
        QFile file(path);
        fuzz::Expect("file", file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
    }

    oracle::ProfileSections expected = oracle::ReadProfile(bytes);
    ProfileFile file(path);
    CheckSame(file, expected, bytes);
    const auto write = [&] {
        for (const Write &one : all) {
            switch (one.kind) {
            case RemoveKey:
                file.RemoveKey(one.section, one.key);
                oracle::RemoveProfileKey(expected, one.section, one.key);
                break;
            case RemoveSection:
                file.RemoveSection(one.section);
                oracle::RemoveProfileSection(expected, one.section);
                break;
            case Replace:
                file.ReplaceSection(one.section, {{one.key, one.value}});
                oracle::RemoveProfileSection(expected, one.section);
                expected.push_back({one.section, {{one.key, one.value}}});
                break;
            default:
                file.SetValue(one.section, one.key, one.value);
                oracle::SetProfileValue(expected, one.section, one.key, one.value);
                break;
            }
            CheckSame(file, expected, bytes);
        }
    };
    if (inOneStep)
        file.InOneStep(write);
    else
        write();
    const QByteArray written = Content(path);
    CheckSame(file, expected, bytes);
    CheckSame(ProfileFile(path), expected, bytes);
    fuzz::Expect("other lines stay", oracle::OtherProfileLines(written) == oracle::OtherProfileLines(bytes),
                 bytes, written);
    return 0;
}
