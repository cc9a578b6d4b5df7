// SPDX-License-Identifier: GPL-3.0-or-later
#include "console/runlog.h"

#include "platform/nativefile.h"
#include "platform/userfolders.h"

#include <algorithm>
#include <QByteArray>
#include <QCoreApplication>
#include <QDir>
#include <QStringList>
#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

namespace
{

constexpr auto OwnerOnly = QFileDevice::ReadOwner | QFileDevice::WriteOwner;
const QString Suffix = u".log"_s;
const QString TailSuffix = u".tail"_s;
const QString OlderTailSuffix = u".tail-older"_s;
constexpr qsizetype LongestName = 40;
constexpr qint64 CopyPiece = 1 << 20;
/// A tail of less than this part of its limit is not worth its files.
constexpr qint64 LeastTailPart = 50;

/// A preset's name as part of a file's name.
QString PlainName(const QString &name)
{
    QString plain;
    for (const QChar character : name.left(LongestName))
        plain += character.isLetterOrNumber() || character == u'-' || character == u'.' ? character : u'_';
    return plain.isEmpty() ? u"run"_s : plain;
}

void RemoveOld(const QString &folder, int logs)
{
    // The names begin with the time, so their order is that of the runs.
    const QStringList names = QDir(folder).entryList({u'*' + Suffix}, QDir::Files, QDir::Name);
    for (qsizetype i = 0; i < names.size() - logs; ++i) {
        const QString path = folder + u'/' + names[i];
        const NativeFile left = LockLeftFile(path);
        if (!left.IsOpen())
            continue; // its run still goes
        QFile::remove(path);
        QFile::remove(path + TailSuffix);
        QFile::remove(path + OlderTailSuffix);
    }
}

} // namespace

QString RunLog::Folder()
{
    return StateFolder() + u"/runs"_s;
}

RunLog::RunLog(const QString &folder, const QString &name, const QDateTime &begun)
    : RunLog(folder, name, begun, Limits{})
{
}

RunLog::RunLog(const QString &folder, const QString &name, const QDateTime &begun, Limits limits)
    : m_limits(limits)
{
    if (!QDir().mkpath(folder))
        return;
    const QString stem = folder + u'/' + begun.toString(u"yyyyMMdd-HHmmss-zzz"_s) + u'-' +
                         QString::number(QCoreApplication::applicationPid()) + u'-' + PlainName(name);
    m_file.setFileName(stem + Suffix);
    if (!m_file.open(QIODevice::WriteOnly | QIODevice::NewOnly | QIODevice::Unbuffered, OwnerOnly))
        return;
    m_path = m_file.fileName();
    m_isWhole = true;
    m_lock = LockLeftFile(m_path);
    RemoveOld(folder, limits.logs);
}

RunLog::~RunLog()
{
    Finish();
}

QString RunLog::TailPath() const
{
    return m_path + TailSuffix;
}

QString RunLog::OlderTailPath() const
{
    return m_path + OlderTailSuffix;
}

void RunLog::Write(QByteArrayView bytes)
{
    if (!m_file.isOpen() && (bytes.isEmpty() || !OpenAgain()))
        return;
    const qsizetype head = qsizetype(std::clamp<qint64>(m_limits.head - m_headLength, 0, bytes.size()));
    if (head > 0) {
        if (m_file.write(bytes.data(), head) != head) {
            GiveUp();
            return;
        }
        m_headLength += head;
    }
    WriteTail(bytes.sliced(head));
}

bool RunLog::OpenAgain()
{
    if (!std::exchange(m_isFinished, false))
        return false;
    // Not where another run has removed it meanwhile as an old one.
    if (!m_file.open(QIODevice::WriteOnly | QIODevice::Append | QIODevice::ExistingOnly |
                     QIODevice::Unbuffered))
        return false;
    m_lock = LockLeftFile(m_path);
    return true;
}

void RunLog::GiveUp()
{
    m_isWhole = false;
    m_file.close(); // the tail's own files stay beside it
    m_tail.reset();
}

void RunLog::WriteTail(QByteArrayView bytes)
{
    if (m_limits.tail <= 0) {
        m_dropped += bytes.size();
        return;
    }
    const qint64 half = std::max<qint64>(1, m_limits.tail / 2);
    while (!bytes.isEmpty()) {
        if (m_tail && m_tailLength >= half) {
            m_tail.reset();
            m_dropped += m_olderLength;
            m_olderLength = m_tailLength;
            QFile::remove(OlderTailPath());
            QFile::rename(TailPath(), OlderTailPath());
        }
        if (!m_tail) {
            m_tail = std::make_unique<QFile>(TailPath());
            m_tailLength = 0;
            if (!m_tail->open(QIODevice::WriteOnly | QIODevice::Truncate | QIODevice::Unbuffered,
                              OwnerOnly)) {
                GiveUp();
                return;
            }
        }
        const qsizetype length = qsizetype(std::min<qint64>(half - m_tailLength, bytes.size()));
        if (m_tail->write(bytes.data(), length) != length) {
            GiveUp();
            return;
        }
        m_tailLength += length;
        bytes = bytes.sliced(length);
    }
}

void RunLog::AppendTail(const QString &path)
{
    QFile tail(path);
    if (!tail.open(QIODevice::ReadOnly))
        return;
    while (!tail.atEnd()) {
        const QByteArray piece = tail.read(CopyPiece);
        if (piece.isEmpty() || m_file.write(piece) != piece.size()) {
            m_isWhole = false; // the tail's own file stays
            return;
        }
    }
    tail.close();
    QFile::remove(path);
}

void RunLog::Finish()
{
    m_tail.reset();
    const NativeFile lock = std::exchange(m_lock, NativeFile()); // until the end stands in the log
    if (!m_file.isOpen())
        return;
    if (m_dropped > 0) {
        const QByteArray gap = "\n[" + QByteArray::number(m_dropped) + " bytes are left out here]\n";
        if (m_file.write(gap) != gap.size()) {
            GiveUp();
            return;
        }
    }
    AppendTail(OlderTailPath());
    AppendTail(TailPath());
    m_file.close();
    // Should the log go on, what is there already counts.
    const qint64 least = m_limits.tail / LeastTailPart;
    m_limits.tail -= m_olderLength + m_tailLength;
    if (m_limits.tail < least)
        m_limits.tail = 0;
    m_olderLength = m_tailLength = m_dropped = 0;
    m_isFinished = m_isWhole;
}

} // namespace zelvane
