// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace pugi
{
class xml_node;
}

namespace zelvane
{

struct DocumentRecord;
struct EditorContext;

// The data that the program keeps with a document: one XML element, between the tags <Zelvane> and </Zelvane>
// of a unified file, or in a file beside the document.

/// A store as it was when it was loaded, for the one who writes it later.
struct LoadedStore {
    QString text;      ///< empty when it could not be read
    bool whole = true; ///< nothing of it was left out because of an error
};

/// Whether a file is there that is no folder.
bool FileExists(const QString &path);

/// The file beside the document: its path with the extension xml. An orchestra and a score of one name share
/// it.
QString DataFile(const DocumentRecord &document);

/// The text of the store; empty when there is none. @throws RunTimeError when the file cannot be read
QString GetDataStore(const EditorContext &editor);

/// The XML of the store's first element of that name, of all of it without a name; empty when there is none
/// and when the store does not parse.
QString GetDataSection(const EditorContext &editor, const QString &name);

/// Puts an element into the store, which is written at once if it is a file. A file is copied beside itself
/// first when it holds what the element cannot: what is no instrument, what was not loaded, what has come
/// since. The status line says so.
/// @param keep false replaces the elements of the same name @param loaded what the element was made from,
/// null when from nothing @return false when it could not be stored @throws RunTimeError when the store holds
/// another element already, when the element is too large to be read again, and when the store cannot be read
/// or written: it is as it was then
bool StoreDataSection(EditorContext &editor, const QString &xml, bool keep,
                      const LoadedStore *loaded = nullptr);

/// Makes the element the document's store; asks where it is to lie when there is none. A file whose contents
/// would be lost, since they cannot be read, is copied beside itself first. @return false when it could not
/// be stored, or the user has cancelled
bool SetDataStore(EditorContext &editor, const QString &xml);

/// Asks whether a new file may be made, and makes it. One that has come up meanwhile stays as it is.
bool ConfirmNewDataFile(EditorContext &editor, const QString &path);

/// The text of a node and of what is in it, as the store keeps it. Line ends are CR LF. Values are written
/// decoded: they have to come escaped once.
/// @param level tabs in front of what is no element
QString FormatXmlNode(const pugi::xml_node &node, int level);

} // namespace zelvane
