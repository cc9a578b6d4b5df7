// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/ownwindow.h"

#include "platform/consolestart.h"
#include "platform/executables.h"

#include <algorithm>
#include <array>
#include <QByteArray>
#include <QCoreApplication>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QLatin1String>
#include <QStandardPaths>
#include <QStringList>
#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

namespace
{

constexpr qint64 LargestEntry = 1 << 20;

template <typename Names> bool IsOneOf(const Names &names, const QString &program)
{
    const QString name = QFileInfo(program).fileName();
    return std::any_of(names.begin(), names.end(), [&](QLatin1String known) { return name == known; });
}

/// What entries use to run something else: that is named as graphical, not they.
bool IsGeneralProgram(const QString &program)
{
    static const std::array names{QLatin1String("sh"),    QLatin1String("bash"),    QLatin1String("dash"),
                                  QLatin1String("zsh"),   QLatin1String("env"),     QLatin1String("perl"),
                                  QLatin1String("ruby"),  QLatin1String("java"),    QLatin1String("node"),
                                  QLatin1String("wine"),  QLatin1String("flatpak"), QLatin1String("snap"),
                                  QLatin1String("sudo"),  QLatin1String("pkexec"),  QLatin1String("csound"),
                                  QLatin1String("nohup"), QLatin1String("busybox")};
    return IsOneOf(names, program) || QFileInfo(program).fileName().startsWith(u"python"_s);
}

/// What hands a file over to the program for it and ends: that one would end with the console.
bool IsLauncher(const QString &program)
{
    static const std::array names{
        QLatin1String("xdg-open"),    QLatin1String("gio"),        QLatin1String("gtk-launch"),
        QLatin1String("exo-open"),    QLatin1String("kde-open"),   QLatin1String("kde-open5"),
        QLatin1String("kioclient"),   QLatin1String("kioclient5"), QLatin1String("mimeopen"),
        QLatin1String("run-mailcap"), QLatin1String("see")};
    return IsOneOf(names, program);
}

/// The first words of an entry's command line.
QStringList FirstWords(const QString &exec, qsizetype most)
{
    QStringList words;
    QString word;
    bool quoted = false;
    bool inWord = false;
    for (qsizetype i = 0; i < exec.size() && words.size() < most; ++i) {
        const QChar character = exec[i];
        if (!quoted && character == u' ') {
            if (std::exchange(inWord, false))
                words.append(std::exchange(word, {}));
            continue;
        }
        inWord = true;
        if (character == u'"')
            quoted = !quoted;
        else if (quoted && character == u'\\' && i + 1 < exec.size())
            word += exec[++i];
        else
            word += character;
    }
    if (inWord)
        words.append(word);
    return words;
}

/// The program of an entry's command line, also behind variables that are set for it.
QString ProgramOf(const QString &exec)
{
    constexpr qsizetype most = 40;
    const QStringList words = FirstWords(exec, most);
    if (words.isEmpty() || QFileInfo(words.first()).fileName() != u"env"_s)
        return words.value(0);
    const auto program = std::find_if(words.begin() + 1, words.end(), [](const QString &word) {
        return !word.startsWith(u'-') && !word.contains(u'=');
    });
    return program == words.end() ? QString() : *program;
}

/// The program of an entry with windows of its own; empty for another entry.
QString GraphicalProgramOf(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    QString exec;
    bool inEntry = false;
    bool isApplication = false;
    for (const QByteArray &raw : file.read(LargestEntry).split('\n')) {
        const QString line = QString::fromUtf8(raw).trimmed();
        if (line.startsWith(u'[')) {
            inEntry = line == u"[Desktop Entry]"_s;
            continue;
        }
        if (!inEntry)
            continue;
        const qsizetype equals = line.indexOf(u'=');
        const QString key = line.left(std::max<qsizetype>(0, equals)).trimmed();
        const QString value = line.mid(equals + 1).trimmed();
        if (key == u"Terminal"_s && value == u"true"_s)
            return {};
        if (key == u"Type"_s)
            isApplication = value == u"Application"_s;
        if (key == u"Exec"_s)
            exec = value;
    }
    return isApplication ? ProgramOf(exec) : QString();
}

bool IsOurs(const QString &program)
{
    const QFileInfo own(QCoreApplication::applicationFilePath());
    const QString path = QFileInfo(program).canonicalFilePath();
    return path == own.canonicalFilePath() || path == QFileInfo(ConsoleProgram()).canonicalFilePath() ||
           path == QFileInfo(own.absolutePath() + u"/zelvane"_s).canonicalFilePath();
}

} // namespace

bool HasOwnWindow(const QString &program)
{
    if (IsOurs(program) || IsLauncher(program))
        return true;
    if (IsGeneralProgram(program))
        return false;
    const QString path = QFileInfo(program).canonicalFilePath();
    const QString name = QFileInfo(program).fileName();
    for (const QString &folder : QStandardPaths::standardLocations(QStandardPaths::ApplicationsLocation)) {
        QDirIterator entries(folder, {u"*.desktop"_s}, QDir::Files, QDirIterator::Subdirectories);
        while (entries.hasNext()) {
            const QString entry = GraphicalProgramOf(entries.next());
            // The name first: few entries need a look at the file system.
            if (entry.isEmpty() || IsGeneralProgram(entry))
                continue;
            if (QFileInfo(entry).fileName() != name &&
                QFileInfo(entry).fileName() != QFileInfo(path).fileName())
                continue;
            if (QFileInfo(FindExecutable(entry)).canonicalFilePath() == path)
                return true;
        }
    }
    return false;
}

} // namespace zelvane
