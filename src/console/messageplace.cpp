// SPDX-License-Identifier: GPL-3.0-or-later
#include "console/messageplace.h"

#include "console/runmessages.h"
#include "platform/runtimeerror.h"
#include "platform/textfile.h"
#include "shell/lineends.h"

#include <algorithm>
#include <QDir>
#include <QFileInfo>
#include <QStringView>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

namespace
{

bool IsWordCharacter(QChar character)
{
    return character.isLetterOrNumber() || character == u'_';
}

bool HasWord(QStringView line, QStringView word)
{
    if (word.isEmpty())
        return false;
    for (qsizetype at = line.indexOf(word); at >= 0; at = line.indexOf(word, at + 1)) {
        const qsizetype end = at + word.size();
        const bool opens = at == 0 || !IsWordCharacter(line[at - 1]) || !IsWordCharacter(word.front());
        const bool closes =
            end == line.size() || !IsWordCharacter(line[end]) || !IsWordCharacter(word.back());
        if (opens && closes)
            return true;
    }
    return false;
}

/// The line nearest to `line` that passes the test; 0 where none does.
template <typename Test> int Nearest(const QStringList &lines, int line, Test test)
{
    const int count = int(lines.size());
    const auto passes = [&](int n) { return n >= 1 && n <= count && test(lines[n - 1]); };
    for (int away = 0; away < std::max(line, count - line + 1); ++away) {
        if (passes(line + away))
            return line + away;
        if (passes(line - away))
            return line - away;
    }
    return 0;
}

/// No piece is that long; what the user names so is no text.
constexpr qint64 LongestText = 64'000'000;

QString TextOf(const QString &path)
{
    if (QFileInfo(path).size() > LongestText)
        return {};
    try {
        return ToLineFeeds(ReadTextFile(path));
    } catch (const RunTimeError &) {
        return {}; // the editor says why when it opens the file
    }
}

QString FindFile(const QString &name, const PlaceSources &sources)
{
    QStringList folders{sources.folder};
    for (const QString &document : sources.documents)
        folders.append(QFileInfo(document).absolutePath());
    folders += sources.folders;
    for (const QString &folder : folders) {
        const QFileInfo file(QDir(folder), name);
        if (file.isFile())
            return QDir::cleanPath(file.absoluteFilePath());
    }
    return {};
}

} // namespace

QStringList DocumentsOf(const QStringList &arguments)
{
    // A letter with a value takes what stands behind it, or the next argument where nothing does.
    static const QString withValue = u"oiLMFQxUbBrktjmO"_s;
    QStringList documents;
    for (qsizetype i = 0; i < arguments.size(); ++i) {
        const QString &argument = arguments[i];
        if (!argument.startsWith(u'-')) {
            documents.append(argument);
            continue;
        }
        if (argument.startsWith(u"--"_s) || argument.startsWith(u"-+"_s))
            continue;
        for (qsizetype at = 1; at < argument.size(); ++at) {
            if (!withValue.contains(argument[at]))
                continue;
            if (at + 1 == argument.size())
                ++i;
            break;
        }
    }
    return documents;
}

int SettleLine(const RunMessage &message, const QString &text)
{
    const QStringList lines = text.split(u'\n');
    const int count = int(lines.size());
    if (message.line <= 0)
        return 0;
    const int line = std::clamp(message.line, 1, count);
    const auto hasToken = [&](const QString &candidate) { return HasWord(candidate, message.token); };
    if (message.lineIsBefore && line < count && hasToken(lines[line]))
        return line + 1;
    const QString context = message.context.simplified();
    if (!context.isEmpty())
        if (const int found = Nearest(lines, line, [&](const QString &candidate) {
                return candidate.simplified().contains(context);
            }))
            return found;
    if (!message.token.isEmpty())
        if (const int found = Nearest(lines, line, hasToken))
            return found;
    return line;
}

std::optional<MessagePlace> FindPlace(const RunMessage &message, const PlaceSources &sources)
{
    if (!message.files.isEmpty()) {
        const QString path = FindFile(message.files.first(), sources);
        if (path.isEmpty())
            return {};
        return MessagePlace{path, SettleLine(message, TextOf(path))};
    }
    // A message about a file that is not there: the line that names it.
    if (message.token.isEmpty() && message.line == 0)
        return {};
    for (const QString &document : sources.documents) {
        const QString path = FindFile(document, sources);
        if (path.isEmpty())
            continue;
        const QString text = TextOf(path);
        if (message.line > 0)
            return MessagePlace{path, SettleLine(message, text)};
        const QStringList lines = text.split(u'\n');
        if (const int found =
                Nearest(lines, 1, [&](const QString &line) { return HasWord(line, message.token); }))
            return MessagePlace{path, found};
    }
    return {};
}

} // namespace zelvane
