// SPDX-License-Identifier: GPL-3.0-or-later
#include "instruments/zelvanedata.h"

#include "instruments/storedinstruments.h"
#include "instruments/texttags.h"
#include "instruments/xmltext.h"
#include "platform/desktop.h"
#include "platform/runtimeerror.h"
#include "platform/samefile.h"
#include "platform/textfile.h"
#include "platform/withoutblanks.h"
#include "shell/editorcontext.h"
#include "shell/splitpath.h"

#include <cstddef>
#include <cstring>
#include <pugixml.hpp>
#include <QByteArray>
#include <QFile>
#include <QFileInfo>
#include <QString>
#include <QStringView>
#include <string>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

namespace
{

const QString DataTag = u"Zelvane"_s;
const QString ChangedSince = u"had changed since it was read"_s;

bool IsHalf(const DocumentRecord &document)
{
    return document.DocumentKind == FileKind::Orchestra || document.DocumentKind == FileKind::Score;
}

/// Whether the document may have a file beside it; it is none itself, whatever extensions the user has
/// chosen, and wherever links lead.
bool MayHaveFile(const DocumentRecord &document)
{
    return !document.CurrentFile.isEmpty() && !IsSameFile(DataFile(document), document.CurrentFile);
}

QString FileStore(const DocumentRecord &document)
{
    const QString path = DataFile(document);
    if (!MayHaveFile(document) || !FileExists(path))
        return {};
    if (QFileInfo(path).size() > LongestXml)
        throw RunTimeError(ErrorNumber::PathFileAccess,
                           u"The file is too large for instrument data:\n"_s + path);
    return ReadTextFile(path);
}

/// The first name that is free for a copy of a file.
QString CopyName(const QString &path)
{
    QString name = path + u".bak"_s;
    for (int number = 2; QFileInfo::exists(name) || QFileInfo(name).isSymLink(); ++number)
        name = path + u".bak"_s + QString::number(number);
    return name;
}

/// What is to become the store.
struct NewStore {
    QByteArray text; ///< UTF-8
    QString loss;    ///< why the old one is not to go without a copy, empty when it may
};

/// What matters of the store that there is.
struct OldStore {
    QString element; ///< its name, empty when there is none
    QString loss;
};

/// Why writing over a store would lose something, as the status line tells it; empty when it would not.
QString LossOf(const QString &store, const XmlText &xml, const LoadedStore *loaded)
{
    if (QStringView(store).trimmed().isEmpty())
        return {};
    if (!xml.IsParsed() || !HoldsInstrumentsOnly(xml))
        return u"held what cannot be kept there"_s;
    if (loaded && !loaded->whole)
        return u"could not be read whole"_s;
    return loaded && loaded->text != store ? ChangedSince : QString();
}

OldStore LookAtStore(const EditorContext &editor, const LoadedStore *loaded = nullptr)
{
    const QString text = GetDataStore(editor);
    const XmlText xml(text);
    return {QString::fromUtf8(xml.Root().name()), LossOf(text, xml, loaded)};
}

/// Writes the file beside the document; what it held and the program cannot keep stays in a copy.
bool WriteDataFile(EditorContext &editor, const QString &path, const NewStore &store)
{
    if (store.loss.isEmpty()) {
        WriteFileBytes(path, store.text);
        return true;
    }
    const QString copy = CopyName(path);
    WriteFileBytes(copy, ReadFileBytes(path));
    QFile::setPermissions(copy, QFileInfo(path).permissions()); // what others may not read stays so
    WriteFileBytes(path, store.text);
    editor.status.Show(
        u"%1 %2; it was copied to %3"_s.arg(BareFileName(path), store.loss, BareFileName(copy)));
    return true;
}

/// Writes the file where there was none before the user was asked; one that has come up meanwhile stays in a
/// copy.
bool WriteNewDataFile(EditorContext &editor, const QString &path, const NewStore &store)
{
    const bool isThere = FileExists(path) && QFileInfo(path).size() > 0;
    return WriteDataFile(editor, path, {store.text, isThere ? ChangedSince : QString()});
}

/// Writes into the tag of a unified file. What stood there comes back by undo.
bool WriteTag(EditorContext &editor, const NewStore &store)
{
    const bool loses = !store.loss.isEmpty() && !GetTagText(DataTag, editor.text.Text()).isEmpty();
    if (!SetTagText(editor, DataTag, u"\r\n"_s + QString::fromUtf8(store.text), 1))
        return false;
    if (loses)
        editor.status.Show(u"<Zelvane> %1; Undo brings it back"_s.arg(store.loss));
    return true;
}

/// Asks where to store what belongs to a unified file that has neither the tag nor a file beside it.
BoxAnswer AskForPlace(EditorContext &editor, const QString &path)
{
    const QString opening = u'<' + DataTag + u'>';
    for (;;) {
        const BoxAnswer answer =
            editor.desktop.MessageBox({.text = u"Choose where to store this information.\n\n"
                                               u"  - Press Yes to create a new tag named <Zelvane>.\n"
                                               u"  - Press No to create a new file named '"_s +
                                               path + u"'."_s,
                                       .icon = BoxIcon::Warning,
                                       .buttons = BoxButtons::YesNoCancel});
        // The tag that is read is the first one: behind an open one, all that follows would be taken for
        // data.
        if (answer != BoxAnswer::Yes || !editor.text.Text().contains(opening))
            return answer;
        editor.desktop.MessageBox({.text = u"The text already holds "_s + opening +
                                           u" without its closing tag. Remove it first, or choose a file."_s,
                                   .icon = BoxIcon::Critical});
    }
}

bool SetUnifiedStore(EditorContext &editor, const NewStore &store)
{
    if (FindTag(editor.text, DataTag) != -1)
        return WriteTag(editor, store);
    if (!MayHaveFile(editor.document))
        return false;
    const QString path = DataFile(editor.document);
    if (FileExists(path))
        return WriteDataFile(editor, path, store);
    switch (AskForPlace(editor, path)) {
    case BoxAnswer::Yes:
        AppendTag(editor, DataTag, u"\r\n"_s + QString::fromUtf8(store.text));
        return true;
    case BoxAnswer::No:
        return WriteNewDataFile(editor, path, store);
    default:
        return false;
    }
}

RunTimeError TooLarge()
{
    return {ErrorNumber::OutOfMemory, u"The instrument data is too large to be read again"_s};
}

bool SetStore(EditorContext &editor, const NewStore &store)
{
    if (store.text.size() > LongestXml)
        throw TooLarge();
    const DocumentRecord &document = editor.document;
    if (document.DocumentKind == FileKind::Unified)
        return SetUnifiedStore(editor, store);
    if (!IsHalf(document) || !MayHaveFile(document))
        return false;
    const QString path = DataFile(document);
    if (FileExists(path))
        return WriteDataFile(editor, path, store);
    return ConfirmNewDataFile(editor, path) && WriteNewDataFile(editor, path, store);
}

// The text of nodes, as UTF-8.

std::string NodeText(const pugi::xml_node &node)
{
    return NodeXml(node).toStdString();
}

void PutText(std::string &to, const pugi::xml_node &node, int level)
{
    // Behind a lone text the element's end follows on the same line.
    const bool amongOthers = node.parent().first_child() != node.parent().last_child();
    QString xml = NodeXml(node);
    xml.replace(u"\r\n"_s, u" "_s).replace(u'\t', u' ');
    if (amongOthers)
        to.append(std::size_t(level), '\t');
    to += WithoutBlanks(xml).toString().toStdString(); // other white space is part of the text
    if (amongOthers)
        to += "\r\n";
}

void PutNode(std::string &to, const pugi::xml_node &node, int level);

void PutChildren(std::string &to, const pugi::xml_node &node, int level)
{
    for (pugi::xml_node child = node.first_child(); child; child = child.next_sibling())
        PutNode(to, child, level);
}

void PutElement(std::string &to, const pugi::xml_node &node, int level)
{
    to += '<';
    to += node.name();
    for (pugi::xml_attribute attribute = node.first_attribute(); attribute;
         attribute = attribute.next_attribute()) {
        const char *const value = attribute.value();
        const char quote = std::strchr(value, '"') ? '\'' : '"';
        to += ' ';
        to += attribute.name();
        to += '=';
        to += quote;
        to += value;
        to += quote;
    }
    const pugi::xml_node first = node.first_child();
    if (!first) {
        to += "/>\r\n";
        return;
    }
    to += '>';
    if (first.type() == pugi::node_pcdata && first == node.last_child()) {
        PutText(to, first, level);
    } else {
        to += "\r\n";
        PutChildren(to, node, level + 1);
    }
    to += "</";
    to += node.name();
    to += ">\r\n";
}

void PutNode(std::string &to, const pugi::xml_node &node, int level)
{
    switch (node.type()) {
    case pugi::node_null:
        return;
    case pugi::node_document:
        PutChildren(to, node, level);
        return;
    case pugi::node_element:
        PutElement(to, node, level);
        return;
    case pugi::node_pcdata:
        PutText(to, node, level);
        return;
    case pugi::node_cdata:
    case pugi::node_comment: {
        const std::string xml = NodeText(node);
        if (xml.find('\r') == std::string::npos)
            to.append(std::size_t(level), '\t');
        to += xml + "\r\n";
        return;
    }
    default:
        to.append(std::size_t(level), '\t') += NodeText(node) + "\r\n";
    }
}

/// @param room the length to expect
QByteArray Formatted(const pugi::xml_node &node, int level, qsizetype room)
{
    std::string text;
    text.reserve(std::size_t(room));
    PutNode(text, node, level);
    return QByteArray::fromStdString(text);
}

} // namespace

bool FileExists(const QString &path)
{
    const QFileInfo info(path);
    return info.exists() && !info.isDir();
}

QString DataFile(const DocumentRecord &document)
{
    return SplitPath(PathPart::WithoutExtension, document.CurrentFile) + u".xml"_s;
}

QString GetDataStore(const EditorContext &editor)
{
    if (IsHalf(editor.document))
        return FileStore(editor.document);
    if (editor.document.DocumentKind != FileKind::Unified)
        return {};
    const QString inTag = GetTagText(DataTag, editor.text.Text());
    return inTag.isEmpty() ? FileStore(editor.document) : inTag;
}

QString GetDataSection(const EditorContext &editor, const QString &name)
{
    const XmlText xml(GetDataStore(editor));
    if (!xml.IsParsed())
        return {};
    const pugi::xml_node node = name.isEmpty() ? xml.Document() : xml.Find(name.toUtf8().constData());
    return node ? NodeXml(node) : QString();
}

bool StoreDataSection(EditorContext &editor, const QString &xml, bool keep, const LoadedStore *loaded)
{
    if (xml.isEmpty())
        return false;
    // Large stores are not held side by side.
    const OldStore old = LookAtStore(editor, loaded);
    const XmlText section(xml);
    if (!section.IsParsed() && xml.toUtf8().size() > LongestXml)
        throw TooLarge();
    if (!section.IsParsed())
        return false;
    if (!old.element.isEmpty() && (keep || old.element != QString::fromUtf8(section.Root().name())))
        throw RunTimeError(ErrorNumber::InvalidCall,
                           u"The document's data holds another element already: <%1>"_s.arg(old.element));
    return SetStore(editor, {Formatted(section.Root(), 0, xml.size()), old.loss});
}

bool SetDataStore(EditorContext &editor, const QString &xml)
{
    const XmlText element(xml);
    return element.IsParsed() &&
           SetStore(editor, {Formatted(element.Root(), 0, xml.size()), LookAtStore(editor).loss});
}

bool ConfirmNewDataFile(EditorContext &editor, const QString &path)
{
    return editor.desktop.MessageBox({.text = u"Zelvane will store information onto a new file named: "_s +
                                              path + u"\n\nWould you like to proceed?"_s,
                                      .icon = BoxIcon::Warning,
                                      .buttons = BoxButtons::YesNo}) == BoxAnswer::Yes &&
           (FileExists(path) || WriteTextFile(path, {}));
}

QString FormatXmlNode(const pugi::xml_node &node, int level)
{
    return QString::fromUtf8(Formatted(node, level, 0));
}

} // namespace zelvane
