// SPDX-License-Identifier: GPL-3.0-or-later
#include "instruments/zelvanedata.h"

#include "instruments/storedinstruments.h"
#include "instruments/texttags.h"
#include "instruments/xmltext.h"
#include "platform/desktop.h"
#include "platform/runtimeerror.h"
#include "platform/textfile.h"
#include "shell/editorcontext.h"
#include "shell/splitpath.h"

#include <cstring>
#include <pugixml.hpp>
#include <QByteArray>
#include <QFileInfo>
#include <QStringView>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

namespace
{

const QString DataTag = u"Zelvane"_s;

bool IsHalf(const DocumentRecord &document)
{
    return document.DocumentKind == FileKind::Orchestra || document.DocumentKind == FileKind::Score;
}

/// Whether the document may have a file beside it; it is none itself, whatever extensions the user has
/// chosen.
bool MayHaveFile(const DocumentRecord &document)
{
    return !document.CurrentFile.isEmpty() && DataFile(document) != document.CurrentFile;
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

/// Whether a store holds something that reading its instruments and writing them again would lose.
bool WouldLose(const QString &store, const XmlText &xml)
{
    return !QStringView(store).trimmed().isEmpty() && !(xml.IsParsed() && HoldsInstrumentsOnly(xml));
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
    QString text;
    bool loses = false; ///< what the old one holds
};

/// Writes the file beside the document; what it held and the program cannot keep stays in a copy.
bool WriteDataFile(EditorContext &editor, const QString &path, const NewStore &store)
{
    if (!store.loses)
        return WriteTextFile(path, store.text);
    const QString copy = CopyName(path);
    WriteFileBytes(copy, ReadFileBytes(path));
    const bool written = WriteTextFile(path, store.text);
    editor.status.Show(u"%1 held what cannot be kept there; it was copied to %2"_s.arg(BareFileName(path),
                                                                                       BareFileName(copy)));
    return written;
}

/// Writes into the tag of a unified file. What stood there comes back by undo.
bool WriteTag(EditorContext &editor, const NewStore &store)
{
    const bool loses = store.loses && !GetTagText(DataTag, editor.text.Text()).isEmpty();
    if (!SetTagText(editor, DataTag, u"\r\n"_s + store.text, 1))
        return false;
    if (loses)
        editor.status.Show(u"<Zelvane> held what cannot be kept there; Undo brings it back"_s);
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
        AppendTag(editor, DataTag, u"\r\n"_s + store.text);
        return true;
    case BoxAnswer::No:
        return WriteDataFile(editor, path, store);
    default:
        return false;
    }
}

bool SetStore(EditorContext &editor, const NewStore &store)
{
    const DocumentRecord &document = editor.document;
    if (document.DocumentKind == FileKind::Unified)
        return SetUnifiedStore(editor, store);
    if (!IsHalf(document) || !MayHaveFile(document))
        return false;
    const QString path = DataFile(document);
    return (FileExists(path) || ConfirmNewDataFile(editor, path)) && WriteDataFile(editor, path, store);
}

// The text of nodes, as UTF-8.

QByteArray NodeText(const pugi::xml_node &node)
{
    return NodeXml(node).toUtf8();
}

void PutText(QByteArray &to, const pugi::xml_node &node, int level)
{
    // Behind a lone text the element's end follows on the same line.
    const bool amongOthers = node.parent().first_child() != node.parent().last_child();
    QString xml = NodeXml(node);
    xml.replace(u"\r\n"_s, u" "_s).replace(u'\t', u' ');
    if (amongOthers)
        to += QByteArray(level, '\t');
    // Blanks only: other white space is part of the text.
    qsizetype first = 0;
    qsizetype end = xml.size();
    while (first < end && xml[first] == u' ')
        ++first;
    while (end > first && xml[end - 1] == u' ')
        --end;
    to += QStringView(xml).sliced(first, end - first).toUtf8();
    if (amongOthers)
        to += "\r\n";
}

void PutNode(QByteArray &to, const pugi::xml_node &node, int level);

void PutChildren(QByteArray &to, const pugi::xml_node &node, int level)
{
    for (const pugi::xml_node &child : node.children())
        PutNode(to, child, level);
}

void PutElement(QByteArray &to, const pugi::xml_node &node, int level)
{
    to += '<';
    to += node.name();
    for (const pugi::xml_attribute &attribute : node.attributes()) {
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

void PutNode(QByteArray &to, const pugi::xml_node &node, int level)
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
        const QByteArray xml = NodeText(node);
        if (!xml.contains('\r'))
            to += QByteArray(level, '\t');
        to += xml + "\r\n";
        return;
    }
    default:
        to += QByteArray(level, '\t') + NodeText(node) + "\r\n";
    }
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

bool StoreDataSection(EditorContext &editor, const QString &xml, bool keep)
{
    if (xml.isEmpty())
        return false;
    const QString text = GetDataStore(editor);
    const XmlText store(text);
    const XmlText section(xml);
    if (!section.IsParsed())
        return false;
    const pugi::xml_node other = store.Root();
    if (other && (keep || std::strcmp(other.name(), section.Root().name()) != 0))
        throw RunTimeError(ErrorNumber::InvalidCall,
                           u"The document's data holds another element already: <"_s +
                               QString::fromUtf8(other.name()) + u'>');
    return SetStore(editor, {FormatXmlNode(section.Root(), 0), WouldLose(text, store)});
}

bool SetDataStore(EditorContext &editor, const QString &xml)
{
    const XmlText element(xml);
    if (!element.IsParsed())
        return false;
    const QString text = GetDataStore(editor);
    return SetStore(editor, {FormatXmlNode(element.Root(), 0), WouldLose(text, XmlText(text))});
}

bool ConfirmNewDataFile(EditorContext &editor, const QString &path)
{
    return editor.desktop.MessageBox({.text = u"Zelvane will store information onto a new file named: "_s +
                                              path + u"\n\nWould you like to proceed?"_s,
                                      .icon = BoxIcon::Warning,
                                      .buttons = BoxButtons::YesNo}) == BoxAnswer::Yes &&
           WriteTextFile(path, {});
}

QString FormatXmlNode(const pugi::xml_node &node, int level)
{
    QByteArray text;
    PutNode(text, node, level);
    return QString::fromUtf8(text);
}

} // namespace zelvane
