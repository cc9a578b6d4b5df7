// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/xdgfiletypes.h"

#include "platform/associationlists.h"
#include "platform/fileoperations.h"
#include "platform/runtimeerror.h"
#include "platform/textfile.h"

#include <algorithm>
#include <optional>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QMap>
#include <QProcess>
#include <QRegularExpression>
#include <QScopeGuard>
#include <QSet>
#include <QStandardPaths>
#include <utility>
#include <vector>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

namespace
{

constexpr int LookMs = 50;        ///< how often a tool is looked after
constexpr int UsualWeight = 50;   ///< of names, by the standard of shared MIME information
constexpr int ChosenWeight = 60;  ///< the user has chosen these names: they go before those of other programs
constexpr int UsualPriority = 50; ///< of beginnings, by the same standard
const QByteArray Defaults = "Default Applications";
const QByteArray Added = "Added Associations";
const QByteArray Removed = "Removed Associations";

QString Stem(const ProgramFiles &files)
{
    return files.title.toLower();
}

/// A value of a desktop entry.
QString EntryValue(QString text)
{
    text.replace(u'\\', u"\\\\"_s).replace(u'\n', u"\\n"_s).replace(u'\t', u"\\t"_s).replace(u'\r', u"\\r"_s);
    if (text.startsWith(u' '))
        text.replace(0, 1, u"\\s"_s);
    return text;
}

/// What a value of a desktop entry says.
QString EntryMeaning(const QString &value)
{
    static const QMap<QChar, QChar> signs = {
        {u'\\', u'\\'}, {u'n', u'\n'}, {u't', u'\t'}, {u'r', u'\r'}, {u's', u' '}};
    QString text;
    for (qsizetype i = 0; i < value.size(); ++i) {
        if (value[i] == u'\\' && i + 1 < value.size() && signs.contains(value[i + 1]))
            text += signs[value[++i]];
        else
            text += value[i];
    }
    return text;
}

/// A line of a desktop entry; none where the list is empty.
QString ListLine(const QString &key, const QStringList &values)
{
    QString line;
    for (const QString &value : values)
        line += EntryValue(value).replace(u';', u"\\;"_s) + u';';
    return line.isEmpty() ? QString() : key + u'=' + line + u'\n';
}

/// A program in a command of a desktop entry. It stands in quotes only where it has to: not all readers know
/// them.
QString CommandWord(QString program)
{
    static const QRegularExpression reserved(u"[\\s\"'\\\\><~|&;$*?#()`]"_s);
    static const QRegularExpression escaped(u"([\"`$\\\\])"_s);
    const bool quoted = program.contains(reserved);
    if (quoted)
        program = u'"' + program.replace(escaped, u"\\\\1"_s) + u'"';
    return program.replace(u'%', u"%%"_s);
}

QString CommandValue(const ProgramFiles &files, const FileVerb &verb, const QString &file)
{
    QString command = CommandWord(files.executable);
    for (const QString &part : {verb.parameters, file})
        if (!part.isEmpty())
            command += u' ' + part;
    return EntryValue(command);
}

/// A desktop entry with another program in the place of one that is not there; nothing where it is there, or
/// where the entry names none by its path.
std::optional<QByteArray> WithProgramMoved(const QByteArray &entry, const QString &program)
{
    static const QByteArray tried = "TryExec=";
    QByteArrayList lines = entry.split('\n');
    const auto line = std::find_if(lines.cbegin(), lines.cend(),
                                   [](const QByteArray &one) { return one.startsWith(tried); });
    if (line == lines.cend())
        return {};
    const QString before = EntryMeaning(QString::fromUtf8(line->mid(tried.size())));
    if (!QFileInfo(before).isAbsolute() || QFileInfo::exists(before))
        return {};
    const QByteArray run = "Exec=" + EntryValue(CommandWord(before)).toUtf8();
    for (QByteArray &one : lines) {
        if (one == tried + EntryValue(before).toUtf8())
            one = tried + EntryValue(program).toUtf8();
        else if (one == run || one.startsWith(run + ' '))
            one.replace(0, run.size(), "Exec=" + EntryValue(CommandWord(program)).toUtf8());
    }
    return lines.join('\n');
}

QString Caption(const FileVerb &verb)
{
    return EntryValue(QString(verb.caption).remove(u'&'));
}

QString Pattern(const QString &extension)
{
    static const QRegularExpression special(u"([*?[])"_s);
    // Lower case fits names of any case.
    return u"*."_s + extension.toLower().replace(special, u"[\\1]"_s);
}

void Write(const QString &name, const QByteArray &bytes)
{
    const QString folder = QFileInfo(name).absolutePath();
    if (!QDir().mkpath(folder))
        throw RunTimeError(ErrorNumber::PathNotFound, u"Cannot make the folder "_s + folder, u"File types"_s);
    WriteFileBytes(name, bytes);
}

/// A file that may not be there.
QByteArray Read(const QString &name)
{
    return QFileInfo::exists(name) ? ReadFileBytes(name) : QByteArray();
}

/// The lists of associations in a folder for these desktops alone. They go before the one for all.
QStringList DesktopLists(const QString &folder, const QStringList &desktops)
{
    QStringList lists;
    for (const QString &desktop : desktops)
        lists.append(folder + u'/' + desktop.toLower() + u"-mimeapps.list"_s);
    return lists;
}

} // namespace

void FollowProgram(const ProgramFiles &files, const XdgPlace &place)
{
    for (const FileVerb &verb : files.verbs) {
        const QString name = place.data + u"/applications/"_s + EntryName(files, verb);
        if (const auto entry = WithProgramMoved(Read(name), files.executable))
            Write(name, *entry);
    }
}

QString EntryName(const ProgramFiles &files, const FileVerb &verb)
{
    return Stem(files) + (verb.key.isEmpty() ? QString() : u'-' + verb.key) + u".desktop"_s;
}

QString EntryText(const ProgramFiles &files, const FileVerb &verb)
{
    const bool isMain = verb.key.isEmpty();
    QString text = u"[Desktop Entry]\nType=Application\nVersion=1.0\nName="_s + Caption(verb) + u'\n';
    if (isMain)
        text += u"GenericName="_s + EntryValue(files.kind) + u"\nComment="_s + EntryValue(files.summary) +
                u'\n' + ListLine(u"Keywords"_s, files.keywords);
    text += u"Exec="_s + CommandValue(files, verb, u"%f"_s) + u"\nTryExec="_s + EntryValue(files.executable) +
            u"\nIcon="_s + Stem(files) + u"\nTerminal=false\n"_s;
    text += isMain ? u"Categories=AudioVideo;Audio;AudioVideoEditing;\n"_s : u"NoDisplay=true\n"_s;
    QStringList types;
    for (const FileType &type : files.types)
        types.append(type.name);
    text += ListLine(u"MimeType"_s, types) + u"StartupNotify=true\nStartupWMClass="_s + Stem(files) + u'\n';
    if (!isMain || files.actions.empty())
        return text;
    text += u"Actions="_s;
    for (const FileVerb &action : files.actions)
        text += action.key + u';';
    text += u'\n';
    for (const FileVerb &action : files.actions)
        text += u"\n[Desktop Action "_s + action.key + u"]\nName="_s + Caption(action) + u"\nExec="_s +
                CommandValue(files, action, {}) + u'\n';
    return text;
}

QString MimePackageText(const ProgramFiles &files, int weight)
{
    QString text = u"<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                   "<mime-info xmlns=\"http://www.freedesktop.org/standards/shared-mime-info\">\n"_s;
    QSet<QString> seen;
    for (const FileType &type : files.types) {
        text += u"  <mime-type type=\""_s + type.name.toHtmlEscaped() + u"\">\n    <comment>"_s +
                files.description.toHtmlEscaped() + u"</comment>\n    <icon name=\""_s + Stem(files) +
                u"\"/>\n    <sub-class-of type=\"text/plain\"/>\n"_s;
        if (!type.beginnings.isEmpty()) {
            text += u"    <magic priority=\"%1\">\n"_s.arg(UsualPriority);
            for (const QString &beginning : type.beginnings)
                text += u"      <match type=\"string\" offset=\"0:1024\" value=\""_s +
                        beginning.toHtmlEscaped() + u"\"/>\n"_s;
            text += u"    </magic>\n"_s;
        }
        for (const QString &extension : type.extensions) {
            const QString pattern = Pattern(extension);
            if (seen.contains(pattern))
                continue;
            seen.insert(pattern);
            text += u"    <glob pattern=\""_s + pattern.toHtmlEscaped() + u'"' +
                    (weight == UsualWeight ? QString() : u" weight=\"%1\""_s.arg(weight)) + u"/>\n"_s;
        }
        text += u"  </mime-type>\n"_s;
    }
    return text + u"</mime-info>\n"_s;
}

XdgPlace XdgPlace::OfUser()
{
    return {.data = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation),
            .config = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation),
            .desktops = qEnvironmentVariable("XDG_CURRENT_DESKTOP").split(u':', Qt::SkipEmptyParts),
            .systemConfig = QStandardPaths::standardLocations(QStandardPaths::GenericConfigLocation).mid(1)};
}

void XdgFileTypes::Register(const ProgramFiles &files)
{
    if (m_progress)
        m_progress->Begin(u"Registering file types..."_s);
    const auto end = qScopeGuard([this] {
        if (m_progress)
            m_progress->End();
    });
    WriteTypes(files);
    const QByteArrayList entries = WriteEntries(files);
    QByteArrayList types;
    for (const FileType &type : files.types)
        types.append(type.name.toUtf8());
    WriteLists(types, entries);
}

void XdgFileTypes::WriteTypes(const ProgramFiles &files) const
{
    const QString folder = m_place.data + u"/mime"_s;
    Write(folder + u"/packages/"_s + Stem(files) + u".xml"_s, MimePackageText(files, ChosenWeight).toUtf8());
    if (!RunTool(u"update-mime-database"_s, folder))
        throw RunTimeError(ErrorNumber::PathFileAccess, u"update-mime-database has failed on "_s + folder,
                           u"File types"_s);
    if (!files.icon.isEmpty())
        Write(m_place.data + u"/icons/hicolor/scalable/apps/"_s + Stem(files) + u".svg"_s, files.icon);
}

QByteArrayList XdgFileTypes::WriteEntries(const ProgramFiles &files) const
{
    const QString folder = m_place.data + u"/applications"_s;
    QByteArrayList names;
    for (const FileVerb &verb : files.verbs) {
        const QString name = EntryName(files, verb);
        Write(folder + u'/' + name, EntryText(files, verb).toUtf8());
        names.append(name.toUtf8());
    }
    // The lists say the same: that there is no such tool, or that it fails, is no failure.
    RunTool(u"update-desktop-database"_s, folder);
    return names;
}

void XdgFileTypes::WriteLists(const QByteArrayList &types, const QByteArrayList &entries) const
{
    // What the system's lists say, which go before that of the data folder but not before the user's.
    QByteArrayList defaultElsewhere;
    QByteArrayList removedElsewhere;
    for (const QString &folder : m_place.systemConfig) {
        const QStringList lists = DesktopLists(folder, m_place.desktops) << folder + u"/mimeapps.list"_s;
        for (const QString &name : lists) {
            if (!QFileInfo(name).isFile() || !QFileInfo(name).isReadable())
                continue; // nobody else reads it either
            const QByteArray list = Read(name);
            defaultElsewhere += TypesIn(list, Defaults, types);
            for (const QByteArray &type : types)
                if (WithoutAssociations(list, Removed, {type}, entries) != list)
                    removedElsewhere.append(type);
        }
    }

    const QByteArrayList mainEntry = entries.mid(0, 1);
    std::vector<std::pair<QString, QByteArray>> changed;
    const auto change = [&](const QString &name, const auto &make) {
        const QByteArray before = Read(name);
        if (const QByteArray after = make(before); after != before)
            changed.emplace_back(name, after);
    };
    // Those of the desktop are changed where they say otherwise.
    const auto correct = [&](const QByteArray &before) {
        const QByteArray list = WithoutAssociations(before, Removed, types, entries);
        return WithAssociations(list, Defaults, TypesIn(list, Defaults, types), mainEntry);
    };
    const QString userList = m_place.config + u"/mimeapps.list"_s;
    const QString dataList = m_place.data + u"/applications/mimeapps.list"_s;
    for (const QString &folder : {m_place.config, m_place.data + u"/applications"_s})
        for (const QString &name : DesktopLists(folder, m_place.desktops))
            change(name, correct);
    change(userList, [&](const QByteArray &before) {
        const QByteArray list = WithAssociations(correct(before), Added, removedElsewhere, entries);
        return WithAssociations(list, Defaults, defaultElsewhere, mainEntry);
    });
    change(dataList, [&](const QByteArray &before) {
        QByteArray list = WithoutAssociations(before, Removed, types, entries);
        list = WithAssociations(list, Added, types, entries);
        return WithAssociations(list, Defaults, types, mainEntry);
    });
    // All have been read: what cannot be read has changed none.
    for (const auto &[name, list] : changed)
        Write(name, list);
}

bool XdgFileTypes::RunTool(const QString &tool, const QString &folder) const
{
    QProcess process;
    process.setProgram(tool);
    process.setArguments({folder});
    process.setStandardInputFile(QProcess::nullDevice());
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start();
    QElapsedTimer clock;
    clock.start();
    while (!process.waitForFinished(LookMs) && process.state() != QProcess::NotRunning) {
        const bool stopped = m_progress && !m_progress->GoOn(clock.elapsed(), m_toolPatience);
        if (!stopped && clock.elapsed() <= m_toolPatience)
            continue;
        process.kill();
        process.waitForFinished();
        if (stopped)
            throw RunTimeError(ErrorNumber::PathFileAccess, tool + u" was stopped"_s, u"File types"_s);
        return false;
    }
    return process.error() != QProcess::FailedToStart && process.exitStatus() == QProcess::NormalExit &&
           process.exitCode() == 0;
}

} // namespace zelvane
