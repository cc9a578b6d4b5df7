// SPDX-License-Identifier: GPL-3.0-or-later
#include "writing/filesearch.h"

#include "platform/nativefile.h"
#include "platform/readfile.h"
#include "platform/runtimeerror.h"
#include "platform/textbuffer.h"
#include "platform/textencoding.h"
#include "platform/threadtime.h"
#include "shell/findpattern.h"
#include "shell/findtext.h"
#include "shell/lineends.h"

#include <algorithm>
#include <chrono>
#include <new>
#include <optional>
#include <QByteArray>
#include <QDir>
#include <QDirIterator>
#include <QFileInfo>
#include <QRegularExpression>
#include <QStringView>
#include <set>
#include <utility>
#include <vector>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

namespace
{

/// Of a long line so much is told, and so much of it before the hit.
constexpr qsizetype LongestTold = 500;
constexpr qsizetype ToldBefore = 100;

/// The processor time that a regular expression may take for one file: a busy machine makes no file hard. Who
/// has waited long enough stops the search.
constexpr auto Patience = std::chrono::seconds(2);

/// "*" is any characters, "?" one.
QRegularExpression NamePattern(const QString &pattern)
{
    QString expression;
    for (const QChar c : pattern)
        expression += c == u'*' ? u".*"_s : c == u'?' ? u"."_s : QRegularExpression::escape(QString(c));
    return QRegularExpression(QRegularExpression::anchoredPattern(expression),
                              QRegularExpression::CaseInsensitiveOption |
                                  QRegularExpression::DotMatchesEverythingOption);
}

class Walk
{
public:
    Walk(const FileSearch &search, FileSearchListener &listener)
        : m_search(search), m_listener(listener), m_pattern(search.text, search.options)
    {
        for (const QString &pattern : search.patterns)
            m_names.push_back(NamePattern(pattern));
    }

    SearchCounts Run()
    {
        try {
            SearchFolder(m_search.folder);
        } catch (const std::bad_alloc &) {
            m_counts.cut = true;
        }
        return m_counts;
    }

private:
    bool Ended() const { return m_counts.cut || m_listener.Stopped(); }

    void SearchFolder(const QString &folder)
    {
        const std::optional<FileStamp> stamp = StampOf(folder);
        if (!stamp || !QDir(folder).isReadable()) {
            ++m_counts.unreadable;
            return;
        }
        if (!m_folders.emplace(stamp->device, stamp->file).second)
            return;
        // A folder may hold more names than anybody waits for.
        QStringList files, below;
        QDirIterator entries(folder, QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot);
        while (entries.hasNext() && !Ended()) {
            const QString path = entries.next();
            if (!entries.fileInfo().isDir()) {
                if (IsAskedFor(entries.fileName()))
                    files.append(path);
            } else if (m_search.subFolders) {
                below.append(path);
            }
        }
        files.sort();
        below.sort();
        for (const QString &path : files) {
            if (Ended())
                return;
            SearchEntry(QFileInfo(path));
        }
        for (const QString &path : below) {
            if (Ended())
                return;
            SearchFolder(path);
        }
    }

    bool IsAskedFor(const QString &name) const
    {
        return std::any_of(m_names.begin(), m_names.end(), [&name](const QRegularExpression &pattern) {
            return pattern.match(name).hasMatch();
        });
    }

    void SearchEntry(const QFileInfo &entry)
    {
        if (entry.exists() && !entry.isFile())
            ++m_counts.special;
        else
            SearchFile(entry.filePath());
        m_listener.Counted(m_counts);
    }

    void SearchFile(const QString &path)
    {
        try {
            bool isLarge = false;
            const std::optional<QByteArray> read =
                ReadWhile(OpenRegularFile(path), path, [this, &isLarge](qint64 size) {
                    isLarge = size > m_search.largestFile;
                    return !isLarge && !m_listener.Stopped();
                });
            if (!read) {
                m_counts.large += isLarge ? 1 : 0;
                return;
            }
            const QByteArray &bytes = *read;
            DecodedText decoded = DecodeText(bytes);
            const bool isWide = decoded.encoding.form == TextEncoding::Form::Utf16Little ||
                                decoded.encoding.form == TextEncoding::Form::Utf16Big;
            if (!isWide && bytes.contains('\0')) {
                ++m_counts.binary;
                return;
            }
            const LineEndForm form = DetectPlatform(decoded.text);
            SearchText(path, FromLineEnds(std::move(decoded.text), form));
        } catch (const RunTimeError &) {
            ++m_counts.unreadable;
        } catch (const std::bad_alloc &) {
            ++m_counts.large;
        }
    }

    void SearchText(const QString &path, const QString &text)
    {
        std::optional<PatternSearch> search;
        if (m_search.options & FindRegularExpression) {
            search.emplace(m_pattern, text);
            const auto end = ThreadTime() + Patience;
            search->SetStop([this, end] { return m_listener.Stopped() || ThreadTime() > end; });
        }
        const auto find = [&](qsizetype from) -> std::optional<TextSpan> {
            if (search) {
                const auto hit = search->Next(from);
                return hit ? std::optional(hit->span) : std::nullopt;
            }
            const qsizetype hit = FindText(text, m_search.text, from, -1, m_search.options);
            return hit < 0 ? std::nullopt : std::optional(TextSpan{hit, hit + m_search.text.size()});
        };

        bool any = false;
        qsizetype line = 1;
        qsizetype counted = 0; // up to here lines are
        for (qsizetype from = 0; from <= text.size();) {
            const std::optional<TextSpan> hit = find(from);
            if (!hit)
                break;
            line += QStringView(text).sliced(counted, hit->start - counted).count(u'\n');
            counted = hit->start;
            const qsizetype feed = text.indexOf(u'\n', hit->start);
            const qsizetype lineEnd = feed < 0 ? text.size() : feed;
            any = true;
            ++m_counts.lines;
            m_listener.Found(LineOf(path, line, text, *hit, lineEnd));
            if (m_counts.lines >= m_search.mostLines) {
                m_counts.cut = true;
                break;
            }
            from = std::max(lineEnd + 1, hit->end);
        }
        m_counts.files += any ? 1 : 0;
        if (!search || !search->GaveUp())
            ++m_counts.searched;
        else if (!m_listener.Stopped())
            ++m_counts.hard;
    }

    static FoundLine LineOf(const QString &path, qsizetype line, const QString &text, const TextSpan &hit,
                            qsizetype lineEnd)
    {
        const qsizetype feed = hit.start == 0 ? -1 : text.lastIndexOf(u'\n', hit.start - 1);
        const qsizetype start = feed + 1;
        const bool isLong = lineEnd - start > LongestTold;
        const qsizetype told = isLong ? std::max(start, hit.start - ToldBefore) : start;
        return {.file = path,
                .line = line,
                .text = text.sliced(told, std::min(lineEnd - told, LongestTold)),
                .from = told - start,
                .hit = {hit.start - start, std::min(hit.end, lineEnd) - start}};
    }

    const FileSearch &m_search;
    FileSearchListener &m_listener;
    FindPattern m_pattern;
    std::vector<QRegularExpression> m_names;
    std::set<std::pair<quint64, quint64>> m_folders; ///< that were searched, by device and file
    SearchCounts m_counts;
};

} // namespace

SearchCounts SearchFiles(const FileSearch &search, FileSearchListener &listener)
{
    return Walk(search, listener).Run();
}

} // namespace zelvane
