// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/xdgfiletypes.h"

#include "platform/runtimeerror.h"
#include "platform/textfile.h"

#include <algorithm>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QRegularExpression>
#include <QSet>
#include <QStandardPaths>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

namespace
{

constexpr int ToolPatienceMs = 60000;
constexpr int ChosenWeight = 60; ///< the user has chosen these names: they go before those of other programs
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

/// The lines of a list of associations, and where its group lies.
struct Lines {
    QByteArrayList all;
    qsizetype first = -1; ///< behind the head of the group; -1 when there is none
    qsizetype last = -1;  ///< behind the last line of the group that is not empty

    Lines(const QByteArray &list, const QByteArray &group) : all(list.split('\n'))
    {
        if (all.constLast().isEmpty())
            all.removeLast();
        for (qsizetype i = 0; i < all.size(); ++i) {
            const QByteArray line = all[i].trimmed();
            if (line.startsWith('[')) {
                if (first >= 0)
                    return;
                if (line == '[' + group + ']')
                    first = last = i + 1;
            } else if (first >= 0 && !line.isEmpty()) {
                last = i + 1;
            }
        }
    }

    /// The line of a type in the group, -1 when it has none.
    qsizetype Find(const QByteArray &type) const
    {
        for (qsizetype i = first; i >= 0 && i < last; ++i) {
            const qsizetype equals = all[i].indexOf('=');
            if (equals >= 0 && all[i].left(equals).trimmed() == type)
                return i;
        }
        return -1;
    }

    QByteArrayList Entries(qsizetype line) const
    {
        QByteArrayList entries = all[line].mid(all[line].indexOf('=') + 1).trimmed().split(';');
        entries.removeAll({});
        return entries;
    }

    static QByteArray Line(const QByteArray &type, const QByteArrayList &entries)
    {
        return type + '=' + entries.join(';') + ';';
    }

    QByteArray Text() const { return all.isEmpty() ? QByteArray() : all.join('\n') + '\n'; }
};

QByteArrayList Less(QByteArrayList list, const QByteArrayList &entries)
{
    list.removeIf([&](const QByteArray &entry) { return entries.contains(entry); });
    return list;
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

/// Whether a tool has done its work on a folder.
bool RunTool(const QString &tool, const QString &folder)
{
    QProcess process;
    process.setProgram(tool);
    process.setArguments({folder});
    process.setStandardInputFile(QProcess::nullDevice());
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start();
    return process.waitForFinished(ToolPatienceMs) && process.exitStatus() == QProcess::NormalExit &&
           process.exitCode() == 0;
}

} // namespace

QString EntryName(const ProgramFiles &files, const FileVerb &verb)
{
    return Stem(files) + (verb.key.isEmpty() ? QString() : u'-' + verb.key) + u".desktop"_s;
}

QString EntryText(const ProgramFiles &files, const FileVerb &verb)
{
    const bool isMain = verb.key.isEmpty();
    QString text = u"[Desktop Entry]\nType=Application\nVersion=1.0\nName="_s + Caption(verb) + u'\n';
    if (isMain)
        text +=
            u"GenericName="_s + EntryValue(files.kind) + u"\nComment="_s + EntryValue(files.summary) + u'\n';
    text += u"Exec="_s + CommandValue(files, verb, u"%f"_s) + u"\nTryExec="_s + EntryValue(files.executable) +
            u"\nIcon="_s + Stem(files) + u"\nTerminal=false\n"_s;
    text += isMain ? u"Categories=AudioVideo;Audio;AudioVideoEditing;\n"_s : u"NoDisplay=true\n"_s;
    text += u"MimeType="_s;
    for (const FileType &type : files.types)
        text += type.name + u';';
    text += u"\nStartupNotify=true\nStartupWMClass="_s + Stem(files) + u'\n';
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
            text += u"    <magic priority=\"50\">\n"_s;
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
                    (weight == 50 ? QString() : u" weight=\"%1\""_s.arg(weight)) + u"/>\n"_s;
        }
        text += u"  </mime-type>\n"_s;
    }
    return text + u"</mime-info>\n"_s;
}

QByteArray WithAssociations(const QByteArray &list, const QByteArray &group, const QByteArrayList &types,
                            const QByteArrayList &entries)
{
    QByteArray text = list;
    for (const QByteArray &type : types) {
        Lines lines(text, group);
        if (const qsizetype line = lines.Find(type); line >= 0) {
            lines.all[line] = Lines::Line(type, entries + Less(lines.Entries(line), entries));
        } else {
            if (lines.first < 0) {
                if (!lines.all.isEmpty() && !lines.all.constLast().trimmed().isEmpty())
                    lines.all.append(QByteArray());
                lines.all.append('[' + group + ']');
                lines.last = lines.all.size();
            }
            lines.all.insert(lines.last, Lines::Line(type, entries));
        }
        text = lines.Text();
    }
    return text;
}

QByteArray WithoutAssociations(const QByteArray &list, const QByteArray &group, const QByteArrayList &types,
                               const QByteArrayList &entries)
{
    QByteArray text = list;
    for (const QByteArray &type : types) {
        Lines lines(text, group);
        const qsizetype line = lines.Find(type);
        if (line < 0)
            continue;
        const QByteArrayList before = lines.Entries(line);
        const QByteArrayList after = Less(before, entries);
        if (after == before)
            continue;
        if (after.isEmpty())
            lines.all.removeAt(line);
        else
            lines.all[line] = Lines::Line(type, after);
        text = lines.Text();
    }
    return text;
}

QByteArrayList TypesIn(const QByteArray &list, const QByteArray &group, const QByteArrayList &types)
{
    const Lines lines(list, group);
    QByteArrayList found = types;
    found.removeIf([&](const QByteArray &type) { return lines.Find(type) < 0; });
    return found;
}

XdgFileTypes::XdgFileTypes()
    : XdgFileTypes(QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation),
                   QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation),
                   qEnvironmentVariable("XDG_CURRENT_DESKTOP").split(u':', Qt::SkipEmptyParts))
{
}

XdgFileTypes::XdgFileTypes(const QString &dataFolder, const QString &configFolder,
                           const QStringList &desktops)
    : m_dataFolder(dataFolder), m_configFolder(configFolder), m_desktops(desktops)
{
}

void XdgFileTypes::Register(const ProgramFiles &files)
{
    const QString types = m_dataFolder + u"/mime"_s;
    Write(types + u"/packages/"_s + Stem(files) + u".xml"_s, MimePackageText(files, ChosenWeight).toUtf8());
    if (!RunTool(u"update-mime-database"_s, types))
        throw RunTimeError(ErrorNumber::PathFileAccess, u"update-mime-database has failed on "_s + types,
                           u"File types"_s);
    if (!files.icon.isEmpty())
        Write(m_dataFolder + u"/icons/hicolor/scalable/apps/"_s + Stem(files) + u".svg"_s, files.icon);

    const QString entries = m_dataFolder + u"/applications"_s;
    QByteArrayList entryNames;
    for (const FileVerb &verb : files.verbs) {
        const QString name = EntryName(files, verb);
        Write(entries + u'/' + name, EntryText(files, verb).toUtf8());
        entryNames.append(name.toUtf8());
    }
    // The lists below say the same: that there is no such tool, or that it fails, is no failure.
    RunTool(u"update-desktop-database"_s, entries);

    QByteArrayList typeNames;
    for (const FileType &type : files.types)
        typeNames.append(type.name.toUtf8());
    const QByteArrayList chosen = entryNames.mid(0, 1);
    const QString ownList = entries + u"/mimeapps.list"_s;
    QByteArray list = Read(ownList);
    list = WithoutAssociations(list, Removed, typeNames, entryNames);
    list = WithAssociations(list, Added, typeNames, entryNames);
    list = WithAssociations(list, Defaults, typeNames, chosen);
    Write(ownList, list);

    // These go before it. They are changed where they say otherwise.
    QStringList others = {m_configFolder + u"/mimeapps.list"_s};
    for (const QString &folder : {m_configFolder, entries})
        for (const QString &desktop : m_desktops)
            others.append(folder + u'/' + desktop.toLower() + u"-mimeapps.list"_s);
    for (const QString &other : others) {
        const QByteArray before = Read(other);
        QByteArray after = WithoutAssociations(before, Removed, typeNames, entryNames);
        after = WithAssociations(after, Defaults, TypesIn(after, Defaults, typeNames), chosen);
        if (after != before)
            Write(other, after);
    }
}

} // namespace zelvane
