// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <QByteArray>
#include <QString>
#include <set>

namespace zelvane::test
{

/// Follows what a folder's disk holds for certain while the program under test writes, by its calls of fsync
/// and rename: the bytes of a file are on the disk when it was flushed, its name when the folder was. What
/// stands in the folder at the start is on the disk. Writing in place is not followed. One at a time.
class PowerCut
{
public:
    explicit PowerCut(const QString &folder);
    ~PowerCut();
    PowerCut(const PowerCut &) = delete;
    PowerCut &operator=(const PowerCut &) = delete;

    /// What may stand under a name when the power fails now; no value for no file, no bytes for bytes that
    /// were never flushed.
    std::set<std::optional<QByteArray>> Left(const QByteArray &name) const;
    /// What might have stood there after a failure at any moment since the start.
    const std::set<std::optional<QByteArray>> &EverLeft(const QByteArray &name) { return m_ever[name]; }
    /// How often a file was renamed to this name.
    int Replaced(const QByteArray &name) { return m_replaced[name]; }

    void Flushed(int descriptor);
    void Renamed(const QByteArray &from, const QByteArray &to);

private:
    std::map<QByteArray, std::uint64_t> Names() const;
    void Note();

    QByteArray m_folder;
    std::map<std::uint64_t, QByteArray> m_bytes;           // on the disk, by the file's number
    std::map<QByteArray, std::set<std::uint64_t>> m_mayBe; // 0 for no file
    std::map<QByteArray, std::set<std::optional<QByteArray>>> m_ever;
    std::map<QByteArray, int> m_replaced;
};

/// While it lives, flushing costs nothing and does nothing: for tests that write thousands of times.
class IdleDisk
{
public:
    IdleDisk();
    ~IdleDisk();
    IdleDisk(const IdleDisk &) = delete;
    IdleDisk &operator=(const IdleDisk &) = delete;
};

} // namespace zelvane::test
