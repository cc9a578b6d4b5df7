// SPDX-License-Identifier: GPL-3.0-or-later
#include "instruments/zelvanedata.h"

#include "instruments/instrclass.h"
#include "instruments/instrgui.h"
#include "oracle/instrumentsoracle.h"
#include "platform/runtimeerror.h"
#include "support/boxes.h"
#include "support/filebytes.h"
#include "support/printers.h"
#include "support/randomtext.h"
#include "support/testcontext.h"

#include <gtest/gtest.h>
#include <initializer_list>
#include <memory>
#include <pugixml.hpp>
#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QString>
#include <QStringList>
#include <sys/stat.h>
#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace zelvane::test
{

namespace
{

constexpr int RandomRuns = 20000;
const QByteArray OneInstrument = "<instruments>\r\n<instr number=\"1\" name=\"a\">\r\n"
                                 "<p number=\"1\" format=\"0\" min=\"0\" max=\"0\"/>\r\n</instr>\r\n"
                                 "</instruments>\r\n";

/// A document in a folder of its own, and the file beside it.
struct Store : testing::Test, TestContext {
    void Be(FileKind kind, const QString &name, const QString &contents = {})
    {
        document.DocumentKind = kind;
        document.CurrentFile = name.isEmpty() ? QString() : folder.filePath(name);
        text.SetText(contents);
        text.EmptyUndoBuffer();
    }
    QString Beside(const QString &name = u"song.xml"_s) { return folder.filePath(name); }
    QByteArray Bytes(const QString &name = u"song.xml"_s) { return BytesOf(Beside(name)); }
    QStringList Files() { return QDir(folder.path()).entryList({u"song*"_s}, QDir::Files, QDir::Name); }
    bool Save(const QString &name = u"a"_s)
    {
        return StoreDataSection(editor,
                                u"<instruments><instr number=\"1\" name=\"%1\"><p number=\"1\" format=\"0\" "
                                "min=\"0\" max=\"0\"/></instr></instruments>"_s.arg(name),
                                false);
    }
    /// Loads the instruments as a dialog does, to store them later.
    LoadedStore Load() { return LoadInstruments(editor, held); }
    bool SaveLoaded(const LoadedStore &loaded)
    {
        return StoreDataSection(editor, InstrumentsToXml(held, desktop), false, &loaded);
    }
    void ExpectReport(const QString &error) { desktop.ExpectMessage(ErrorBox(error), BoxAnswer::Cancel); }
    Instruments held; ///< what was loaded
    MessageBoxRequest NewFileBox()
    {
        return {.text = u"Zelvane will store information onto a new file named: "_s + Beside() +
                        u"\n\nWould you like to proceed?"_s,
                .icon = BoxIcon::Warning,
                .buttons = BoxButtons::YesNo};
    }
    MessageBoxRequest PlaceBox()
    {
        return {.text = u"Choose where to store this information.\n\n  - Press Yes to create a new tag named "
                        "<Zelvane>.\n  - Press No to create a new file named '"_s +
                        Beside() + u"'."_s,
                .icon = BoxIcon::Warning,
                .buttons = BoxButtons::YesNoCancel};
    }
};

QString Lines(const QByteArray &bytes)
{
    return QString::fromUtf8(bytes).replace(u"\r\n"_s, u"\n"_s);
}

} // namespace

TEST_F(Store, FileLiesBesideTheDocument)
{
    for (const auto &[path, file] :
         std::initializer_list<std::pair<QString, QString>>{{u"/a/song.orc"_s, u"/a/song.xml"_s},
                                                            {u"/a/song.sco"_s, u"/a/song.xml"_s},
                                                            {u"/a.b/song"_s, u"/a.b/song.xml"_s},
                                                            {u"/a/song.1.orc"_s, u"/a/song.1.xml"_s}}) {
        document.CurrentFile = path;
        EXPECT_EQ(DataFile(document), file);
    }
    EXPECT_FALSE(FileExists(folder.path()));
    EXPECT_FALSE(FileExists(Beside()));
    WriteFile(u"song.xml"_s);
    EXPECT_TRUE(FileExists(Beside()));
}

TEST_F(Store, OfHalvesIsTheFile)
{
    WriteFile(u"song.xml"_s, "<x/>");
    for (const FileKind kind : {FileKind::Orchestra, FileKind::Score}) {
        Be(kind, u"song.orc"_s, u"<Zelvane>no</Zelvane>"_s);
        EXPECT_EQ(GetDataStore(editor), u"<x/>"_s);
    }
    Be(FileKind::Orchestra, u"other.orc"_s);
    EXPECT_EQ(GetDataStore(editor), QString());
    Be(FileKind::Orchestra, {});
    EXPECT_EQ(GetDataStore(editor), QString());
    Be(FileKind::Other, u"song.txt"_s, u"<Zelvane>no</Zelvane>"_s);
    EXPECT_EQ(GetDataStore(editor), QString());
}

TEST_F(Store, OfAUnifiedFileIsTheTagOrTheFile)
{
    WriteFile(u"song.xml"_s, "<x/>");
    const auto store = [this](const QString &contents, const QString &name = u"song.csd"_s) {
        Be(FileKind::Unified, name, contents);
        return GetDataStore(editor);
    };
    EXPECT_EQ(store(u"a<Zelvane>\n<y/>\n</Zelvane>"_s), u"\n<y/>\n"_s);
    EXPECT_EQ(store(u"a<Zelvane></Zelvane>"_s), u"<x/>"_s);
    EXPECT_EQ(store(u"a<Zelvane>"_s), u"<x/>"_s);
    EXPECT_EQ(store(u"a"_s), u"<x/>"_s);
    EXPECT_EQ(store(u"a"_s, {}), QString());
    EXPECT_EQ(store(u"a"_s, u"other.csd"_s), QString());
}

TEST_F(Store, SectionIsTheFirstElementOfItsName)
{
    Be(FileKind::Unified, {}, u"<Zelvane><!--c--><a><b n='&lt;'/><b/></a></Zelvane>"_s);
    EXPECT_EQ(GetDataSection(editor, u"b"_s), u"<b n=\"&lt;\"/>"_s);
    EXPECT_EQ(GetDataSection(editor, u"a"_s), u"<a><b n=\"&lt;\"/><b/></a>"_s);
    EXPECT_EQ(GetDataSection(editor, u"c"_s), QString());
    EXPECT_EQ(GetDataSection(editor, {}), u"<!--c--><a><b n=\"&lt;\"/><b/></a>"_s);
    for (const char16_t *bad : {u"<a>", u"<a/><b/>", u"text<a/>", u"<a/>text", u"<![CDATA[x]]><a/>", u"text",
                                u"<!--only-->", u"  ", u"<a></b>"}) {
        Be(FileKind::Unified, {}, u"<Zelvane>"_s + QString::fromUtf16(bad) + u"</Zelvane>"_s);
        EXPECT_EQ(GetDataSection(editor, {}), QString()) << QString::fromUtf16(bad).toStdString();
    }
}

TEST_F(Store, AsksBeforeItMakesAFile)
{
    Be(FileKind::Orchestra, u"song.orc"_s);
    desktop.ExpectMessage(NewFileBox(), BoxAnswer::No);
    EXPECT_FALSE(Save());
    EXPECT_EQ(Files(), QStringList());
    desktop.ExpectMessage(NewFileBox(), BoxAnswer::Yes);
    EXPECT_TRUE(Save());
    EXPECT_EQ(Bytes(), OneInstrument);
    // The score of the piece shares it, without a question.
    Be(FileKind::Score, u"song.sco"_s);
    EXPECT_TRUE(Save(u"b"_s));
    EXPECT_EQ(Bytes(), QByteArray(OneInstrument).replace("\"a\"", "\"b\""));
    EXPECT_EQ(Files(), QStringList(u"song.xml"_s));
    EXPECT_EQ(text.undoSteps, 0);
}

TEST_F(Store, NeedsAPlace)
{
    Be(FileKind::Orchestra, {});
    EXPECT_FALSE(Save());
    Be(FileKind::Unified, {});
    EXPECT_FALSE(Save());
    Be(FileKind::Other, u"song.txt"_s, u"<Zelvane></Zelvane>"_s);
    EXPECT_FALSE(Save());
    Be(FileKind::Midi, u"song.mid"_s);
    EXPECT_FALSE(Save());
    // A document that has the extension itself is never written over.
    Be(FileKind::Orchestra, u"song.xml"_s);
    EXPECT_FALSE(Save());
    EXPECT_EQ(Files(), QStringList());
}

TEST_F(Store, TakesXmlOnly)
{
    Be(FileKind::Unified, {}, u"<Zelvane></Zelvane>"_s);
    EXPECT_FALSE(StoreDataSection(editor, {}, false));
    EXPECT_FALSE(StoreDataSection(editor, u"<a>"_s, false));
    EXPECT_FALSE(SetDataStore(editor, u"<a>"_s));
    EXPECT_FALSE(SetDataStore(editor, {}));
    EXPECT_EQ(text.undoSteps, 0);
}

TEST_F(Store, GoesIntoTheTag)
{
    Be(FileKind::Unified, {}, u"one\n<Zelvane>\n</Zelvane>\ntwo"_s);
    text.SetSelection(2, 3);
    EXPECT_TRUE(Save());
    EXPECT_EQ(text.text, u"one\n<Zelvane>\n"_s + Lines(OneInstrument) + u"</Zelvane>\ntwo"_s);
    EXPECT_EQ(text.undoSteps, 1);
    EXPECT_EQ(text.selection, (TextSpan{2, 3}));
    const QString once = text.text;
    EXPECT_TRUE(Save());
    EXPECT_EQ(text.text, once);
    EXPECT_EQ(status.shown, QStringList());
}

TEST_F(Store, OfAUnifiedFileIsAskedFor)
{
    Be(FileKind::Unified, u"song.csd"_s, u"text"_s);
    desktop.ExpectMessage(PlaceBox(), BoxAnswer::Cancel);
    EXPECT_FALSE(Save());
    EXPECT_EQ(text.text, u"text"_s);
    EXPECT_EQ(Files(), QStringList());

    desktop.ExpectMessage(PlaceBox(), BoxAnswer::Yes);
    EXPECT_TRUE(Save());
    EXPECT_EQ(text.text, u"text\n\n<Zelvane>\n"_s + Lines(OneInstrument) + u"</Zelvane>"_s);
    EXPECT_EQ(text.undoSteps, 1);
    EXPECT_EQ(Files(), QStringList());

    Be(FileKind::Unified, u"song.csd"_s, u"text"_s);
    desktop.ExpectMessage(PlaceBox(), BoxAnswer::No);
    EXPECT_TRUE(Save());
    EXPECT_EQ(Bytes(), OneInstrument);
    EXPECT_EQ(text.text, u"text"_s);
    // From now on the file takes it, without a question.
    EXPECT_TRUE(Save(u"b"_s));
    EXPECT_EQ(Bytes(), QByteArray(OneInstrument).replace("\"a\"", "\"b\""));
}

TEST_F(Store, NeverTakesTheTextBehindAnOpenTag)
{
    const QString contents = u"; <Zelvane> holds the data\nthe piece"_s;
    Be(FileKind::Unified, u"song.csd"_s, contents);
    desktop.ExpectMessage(PlaceBox(), BoxAnswer::Yes);
    desktop.ExpectMessage({.text = u"The text already holds <Zelvane> without its closing tag. Remove it "
                                   "first, or choose a file."_s,
                           .icon = BoxIcon::Critical});
    desktop.ExpectMessage(PlaceBox(), BoxAnswer::No);
    EXPECT_TRUE(Save());
    EXPECT_EQ(text.text, contents);
    EXPECT_EQ(Bytes(), OneInstrument);
}

TEST_F(Store, HoldsOneElement)
{
    WriteFile(u"song.xml"_s, "<?xml version=\"1.0\"?><project/>");
    Be(FileKind::Orchestra, u"song.orc"_s);
    EXPECT_THROW(Save(), RunTimeError);
    EXPECT_EQ(Bytes(), "<?xml version=\"1.0\"?><project/>");
    WriteFile(u"song.xml"_s, OneInstrument);
    EXPECT_THROW(StoreDataSection(editor, u"<instruments/>"_s, true), RunTimeError);
    EXPECT_EQ(Bytes(), OneInstrument);
    WriteFile(u"song.xml"_s);
    EXPECT_TRUE(StoreDataSection(editor, u"<other a='1'/>"_s, true));
    EXPECT_EQ(Bytes(), "<other a=\"1\"/>\r\n");
    EXPECT_EQ(Files(), QStringList(u"song.xml"_s));
}

TEST_F(Store, ThatWouldLoseSomethingIsCopied)
{
    Be(FileKind::Orchestra, u"song.orc"_s);
    QStringList files = {u"song.xml"_s};
    for (const QByteArray &before :
         {QByteArray("no XML"), QByteArray("<instruments>"), QByteArray("a\0b", 3),
          QByteArray("\xff\xfe<\0", 4), QByteArray("<!-- mine --><instruments/>"),
          QByteArray("<instruments><instr number=\"x\"/></instruments>"),
          QByteArray("<instruments><instr number=\"1\"/><instr number=\"1\"/></instruments>"),
          QByteArray(
              "<instruments><instr number=\"1\"><p number=\"1\"/><p number=\"1\"/></instr></instruments>"),
          QByteArray("<instruments><instr number=\"1\"><p max=\"1e999\"/></instr></instruments>"),
          QByteArray("<instruments><instr number=\"1\" colour=\"red\"/></instruments>"),
          QByteArray("<instruments>text</instruments>")}) {
        WriteFile(u"song.xml"_s, before);
        EXPECT_TRUE(Save());
        EXPECT_EQ(Bytes(), OneInstrument);
        const QString copy = files.size() == 1 ? u"song.xml.bak"_s : u"song.xml.bak%1"_s.arg(files.size());
        EXPECT_EQ(Bytes(copy), before);
        EXPECT_EQ(status.text, u"song.xml held what cannot be kept there; it was copied to "_s + copy);
        files.append(copy);
        EXPECT_EQ(Files().size(), files.size());
    }
    status.text.clear();
    for (const QByteArray &before :
         {QByteArray(), QByteArray(" \r\n"), OneInstrument, QByteArray("<instruments/>")}) {
        WriteFile(u"song.xml"_s, before);
        EXPECT_TRUE(Save());
    }
    EXPECT_EQ(Files().size(), files.size());
    EXPECT_EQ(status.text, QString());
}

TEST_F(Store, ThatWasNotLoadedWholeIsCopied)
{
    Be(FileKind::Orchestra, u"song.orc"_s);
    // More p-fields than are read: the last instrument is left out.
    QByteArray before = "<instruments>\r\n";
    for (int number = 1; number <= 9; ++number) {
        before += "<instr number=\"" + QByteArray::number(number) + "\">";
        for (int p = 1; p <= 30000; ++p)
            before += "<p number=\"" + QByteArray::number(p) + "\"/>";
        before += "</instr>";
    }
    before += "</instruments>";
    WriteFile(u"song.xml"_s, before);
    ExpectReport(u"There are too many p-fields (7)"_s);
    const LoadedStore loaded = Load();
    EXPECT_FALSE(loaded.whole);
    EXPECT_EQ(held.Count(), 8);
    EXPECT_TRUE(SaveLoaded(loaded));
    EXPECT_EQ(Bytes(u"song.xml.bak"_s), before);
    EXPECT_FALSE(Bytes().contains("<instr number=\"9\""));
    EXPECT_EQ(status.text, u"song.xml held what cannot be kept there; it was copied to song.xml.bak"_s);
}

TEST_F(Store, ThatCouldNotBeLoadedIsCopied)
{
    Be(FileKind::Orchestra, u"song.orc"_s);
    QFile file(Beside());
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    ASSERT_TRUE(file.resize(200 * 1024 * 1024));
    file.close();
    ExpectReport(u"The file is too large for instrument data:\n"_s + Beside() + u" (75)"_s);
    const LoadedStore loaded = Load();
    EXPECT_FALSE(loaded.whole);
    EXPECT_THROW(SaveLoaded(loaded), RunTimeError);
    // The cause has gone when it is written: what lies there was never seen.
    WriteFile(u"song.xml"_s, OneInstrument);
    EXPECT_TRUE(SaveLoaded(loaded));
    EXPECT_EQ(Bytes(), "<instruments/>\r\n");
    EXPECT_EQ(Bytes(u"song.xml.bak"_s), OneInstrument);
    EXPECT_EQ(status.text, u"song.xml could not be read whole; it was copied to song.xml.bak"_s);
}

TEST_F(Store, ThatAnotherEditorHasWrittenIsCopied)
{
    Be(FileKind::Orchestra, u"song.orc"_s);
    WriteFile(u"song.xml"_s, OneInstrument);
    const LoadedStore loaded = Load();
    // Nothing has come between.
    EXPECT_TRUE(SaveLoaded(loaded));
    EXPECT_EQ(Bytes(), OneInstrument);
    EXPECT_EQ(Files(), QStringList(u"song.xml"_s));
    EXPECT_EQ(status.text, QString());
    // The score of the piece, in another editor.
    const QByteArray other = QByteArray(OneInstrument).replace("\"a\"", "\"b\"");
    WriteFile(u"song.xml"_s, other);
    EXPECT_TRUE(SaveLoaded(loaded));
    EXPECT_EQ(Bytes(), OneInstrument);
    EXPECT_EQ(Bytes(u"song.xml.bak"_s), other);
    EXPECT_EQ(status.text, u"song.xml had changed since it was read; it was copied to song.xml.bak"_s);
}

TEST_F(Store, ThatComesWhileTheUserIsAskedIsCopied)
{
    const auto appear = [this] { WriteFile(u"song.xml"_s, OneInstrument); };
    Be(FileKind::Orchestra, u"song.orc"_s);
    desktop.ExpectMessage(NewFileBox(), BoxAnswer::Yes, appear);
    EXPECT_TRUE(Save(u"b"_s));
    EXPECT_EQ(Bytes(), QByteArray(OneInstrument).replace("\"a\"", "\"b\""));
    EXPECT_EQ(Bytes(u"song.xml.bak"_s), OneInstrument);
    QFile::remove(Beside());
    Be(FileKind::Unified, u"song.csd"_s, u"text"_s);
    desktop.ExpectMessage(PlaceBox(), BoxAnswer::No, appear);
    EXPECT_TRUE(Save(u"c"_s));
    EXPECT_EQ(Bytes(), QByteArray(OneInstrument).replace("\"a\"", "\"c\""));
    EXPECT_EQ(Bytes(u"song.xml.bak2"_s), OneInstrument);
    EXPECT_EQ(status.text, u"song.xml had changed since it was read; it was copied to song.xml.bak2"_s);
}

TEST_F(Store, ThatCannotBeCopiedStays)
{
    // The name of the copy is longer than a name may be.
    const QString name(248, u'n');
    Be(FileKind::Orchestra, name + u".orc"_s);
    WriteFile(name + u".xml"_s, "no XML");
    EXPECT_THROW(Save(), RunTimeError);
    EXPECT_EQ(Bytes(name + u".xml"_s), "no XML");
    EXPECT_EQ(QDir(folder.path()).entryList({u"n*"_s}, QDir::Files), QStringList(name + u".xml"_s));
    EXPECT_EQ(status.text, QString());
}

TEST_F(Store, ThatIsInTheTextComesBackByUndo)
{
    Be(FileKind::Unified, {}, u"<Zelvane>no XML</Zelvane>"_s);
    EXPECT_TRUE(Save());
    EXPECT_EQ(status.text, u"<Zelvane> held what cannot be kept there; Undo brings it back"_s);
    EXPECT_EQ(text.undoSteps, 1);
}

TEST_F(Store, ThatIsNoFileIsNeverReadOrWritten)
{
    Be(FileKind::Orchestra, u"song.orc"_s);
    ASSERT_EQ(mkfifo(QFile::encodeName(Beside()).constData(), 0600), 0);
    EXPECT_THROW(GetDataStore(editor), RunTimeError);
    EXPECT_THROW(Save(), RunTimeError);
    QFile::remove(Beside());
    QDir().mkdir(Beside());
    EXPECT_EQ(GetDataStore(editor), QString());
    desktop.ExpectMessage(NewFileBox(), BoxAnswer::Yes);
    EXPECT_THROW(Save(), RunTimeError);
    EXPECT_TRUE(QFileInfo(Beside()).isDir());
}

TEST_F(Store, ThatIsHostileIsEmpty)
{
    Be(FileKind::Orchestra, u"song.orc"_s);
    const int deep = 1'000'000;
    WriteFile(u"song.xml"_s, QByteArray("<a>").repeated(deep) + QByteArray("</a>").repeated(deep));
    EXPECT_EQ(GetDataSection(editor, {}), QString());
    const int belowTheLimit = 400'000;
    const QByteArray nested =
        QByteArray("<a>").repeated(belowTheLimit) + QByteArray("</a>").repeated(belowTheLimit);
    WriteFile(u"song.xml"_s, nested);
    EXPECT_EQ(GetDataSection(editor, {}), QString());
    EXPECT_TRUE(Save());
    EXPECT_EQ(Bytes(u"song.xml.bak"_s), nested);
    WriteFile(u"song.xml"_s, "<!DOCTYPE instruments [<!ENTITY a \"x\"><!ENTITY b \"&a;&a;&a;\">]>"
                             "<instruments><instr number=\"1\" name=\"&b;\"/></instruments>");
    EXPECT_EQ(LoadInstrument(editor, 1, {}, false)->nome, u"&b;"_s);
}

TEST_F(Store, ThatNamesWhatIsNoCharacterIsCopied)
{
    Be(FileKind::Orchestra, u"song.orc"_s);
    const auto store = [](const QByteArray &name) -> QByteArray {
        return "<instruments><instr number=\"1\" name=\"" + name + "\"/></instruments>";
    };
    for (const QByteArray &name : {"a&#0;b"_ba, "a&#x0;b"_ba, "a&#xD800;b"_ba, "a&#xdFfF;"_ba,
                                   "&#1114112;"_ba, "&#99999999999999999999;"_ba}) {
        WriteFile(u"song.xml"_s, store(name));
        EXPECT_EQ(GetDataSection(editor, {}), QString()) << name.constData();
        EXPECT_TRUE(Save());
        EXPECT_EQ(Bytes(u"song.xml.bak"_s), store(name));
        ASSERT_TRUE(QFile::remove(Beside(u"song.xml.bak"_s)));
    }
    for (const auto &[name, read] : std::initializer_list<std::pair<QByteArray, QString>>{
             {"a&#9;&#xA;&#13;", u"a\t\n\r"_s},
             {"&#x1F3B5;&#65533;&#1114111;", u"\U0001F3B5\uFFFD\U0010FFFF"_s},
             {"&#;&#x;&#0 &#", u"&#;&#x;&#0 &#"_s}}) {
        WriteFile(u"song.xml"_s, store(name));
        const auto instrument = LoadInstrument(editor, 1, {}, false);
        ASSERT_TRUE(instrument) << name.constData();
        EXPECT_EQ(instrument->nome, read) << name.constData();
    }
}

TEST_F(Store, IsNeverTheDocumentItself)
{
    Be(FileKind::Orchestra, u"song.orc"_s);
    WriteFile(u"song.orc"_s, "instr 1\nendin\n");
    ASSERT_TRUE(QFile::link(document.CurrentFile, Beside()));
    EXPECT_EQ(GetDataStore(editor), QString());
    EXPECT_FALSE(Save());
    EXPECT_EQ(Bytes(u"song.orc"_s), "instr 1\nendin\n"_ba);
    Be(FileKind::Unified, u"song.orc"_s);
    EXPECT_FALSE(Save());
    EXPECT_EQ(Bytes(u"song.orc"_s), "instr 1\nendin\n"_ba);
}

TEST_F(Store, ACopyIsForTheSameReaders)
{
    Be(FileKind::Orchestra, u"song.orc"_s);
    WriteFile(u"song.xml"_s, "no store");
    const QFile::Permissions mine = QFile::ReadOwner | QFile::WriteOwner;
    ASSERT_TRUE(QFile::setPermissions(Beside(), mine));
    EXPECT_TRUE(Save());
    EXPECT_EQ(Bytes(u"song.xml.bak"_s), "no store"_ba);
    const auto others = QFile::ReadGroup | QFile::WriteGroup | QFile::ReadOther | QFile::WriteOther;
    EXPECT_EQ(QFile::permissions(Beside(u"song.xml.bak"_s)) & (mine | others), mine);
}

TEST_F(Store, ThatIsTooLargeIsLeftAlone)
{
    Be(FileKind::Orchestra, u"song.orc"_s);
    QFile file(Beside());
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    ASSERT_TRUE(file.resize(200 * 1024 * 1024));
    file.close();
    try {
        GetDataStore(editor);
        FAIL();
    } catch (const RunTimeError &error) {
        EXPECT_EQ(error.Description(), u"The file is too large for instrument data:\n"_s + Beside());
    }
    EXPECT_THROW(Save(), RunTimeError);
    EXPECT_EQ(QFileInfo(Beside()).size(), 200 * 1024 * 1024);
}

TEST_F(Store, IsNeverTooLargeToBeReadAgain)
{
    Be(FileKind::Orchestra, u"song.orc"_s);
    WriteFile(u"song.xml"_s, OneInstrument);
    // Below the limit as it comes, beyond it with a line end behind each element.
    const QString element = u"<p name=\"abcdefghijklmnopqrstuvwxyzab\"/>"_s;
    const qsizetype count = 33'000'000 / element.size();
    EXPECT_LT(count, 1'000'000);
    const QString section = u"<instruments>"_s + element.repeated(count) + u"</instruments>"_s;
    EXPECT_LT(section.size(), 32 * 1024 * 1024);
    EXPECT_THROW(StoreDataSection(editor, section, false), RunTimeError);
    const QString longer = section + u"<!--"_s + u"x"_s.repeated(1'000'000) + u"-->"_s;
    EXPECT_THROW(StoreDataSection(editor, longer, false), RunTimeError);
    EXPECT_EQ(Bytes(), OneInstrument);
    EXPECT_EQ(Files(), QStringList(u"song.xml"_s));
}

TEST_F(Store, KeepsEachValueToTheCharacter)
{
    Be(FileKind::Orchestra, u"song.orc"_s);
    WriteFile(u"song.xml"_s);
    RandomText values({u"&"_s,  u"<"_s,     u">"_s,          u"\""_s,    u"'"_s,
                       u"?"_s,  u"&amp;"_s, u"&quot;"_s,     u"&#39;"_s, u" "_s,
                       u"\t"_s, u"\n"_s,    u"\r"_s,         u"é"_s,     u"‰"_s,
                       u"𝄞"_s,  u"]]>"_s,   u"</Zelvane>"_s, u"x"_s,     QString(QChar(u'\1'))},
                      8);
    Instruments instruments;
    for (qint16 number = 1; number <= 200; ++number) {
        auto instrument = std::make_unique<InstrClass>();
        instrument->number = number;
        instrument->nome = values.Next();
        instrument->description = values.Next();
        for (qint16 p = 1; p <= 5; ++p) {
            pClass &field = instrument->addP(p);
            field.nome = values.Next();
            field.description = values.Next();
            field.group = values.Next();
            field.unit = values.Next();
            field.variable = values.Next();
            field.formato = PFormat(values.Number(0, 3));
            field.min = values.Number(-1000, 1000) / 64.0;
            field.max = values.Number(-1000, 1000) * 1e18;
        }
        instruments.Add(InstrumentKey(number), std::move(instrument));
    }
    EXPECT_TRUE(StoreDataSection(editor, InstrumentsToXml(instruments, desktop), false));
    const QByteArray first = Bytes();
    for (int save = 2; save <= 10; ++save) {
        Instruments read;
        LoadInstruments(editor, read);
        ASSERT_EQ(read.Count(), instruments.Count());
        EXPECT_TRUE(StoreDataSection(editor, InstrumentsToXml(read, desktop), false));
    }
    EXPECT_EQ(Bytes(), first);
    EXPECT_EQ(Files(), QStringList(u"song.xml"_s));
    Instruments read;
    LoadInstruments(editor, read);
    for (qsizetype i = 0; i < read.Count(); ++i) {
        ASSERT_EQ(read.At(i).nome, instruments.At(i).nome);
        ASSERT_EQ(read.At(i).description, instruments.At(i).description);
        for (qsizetype p = 0; p < 5; ++p) {
            const pClass &now = read.At(i).pCol.At(p);
            const pClass &then = instruments.At(i).pCol.At(p);
            ASSERT_EQ(now.key, then.key);
            ASSERT_EQ(now.nome, then.nome);
            ASSERT_EQ(now.description, then.description);
            ASSERT_EQ(now.group, then.group);
            ASSERT_EQ(now.unit, then.unit);
            ASSERT_EQ(now.variable, then.variable);
            ASSERT_EQ(now.formato, then.formato);
            ASSERT_EQ(now.min, then.min);
            ASSERT_EQ(now.max, then.max);
        }
    }
}

TEST_F(Store, IsWrittenToTheByte)
{
    Be(FileKind::Orchestra, u"song.orc"_s);
    WriteFile(u"song.xml"_s);
    EXPECT_TRUE(StoreDataSection(
        editor,
        u"<instruments><instr number=\"1\" name=\"say &amp;quot;x&amp;quot;\"><p number=\"1\" format=\"1\" "
        "min=\"1\" max=\"200\"/></instr><instr number=\"2\"/></instruments>"_s,
        false));
    EXPECT_EQ(Bytes(), "<instruments>\r\n<instr number=\"1\" name=\"say &quot;x&quot;\">\r\n"
                       "<p number=\"1\" format=\"1\" min=\"1\" max=\"200\"/>\r\n</instr>\r\n"
                       "<instr number=\"2\"/>\r\n</instruments>\r\n");
}

namespace
{

/// A random node, no deeper than `depth`.
oracle::Node RandomNode(RandomText &texts, int depth)
{
    oracle::Node node;
    node.text = QStringLiteral("e%1").arg(texts.Number(0, 9));
    for (int i = texts.Number(0, 2); i > 0; --i)
        node.attributes.append({QStringLiteral("a%1").arg(i), texts.Next()});
    bool textBefore = false;
    for (int i = texts.Number(0, depth > 0 ? 4 : 0); i > 0; --i) {
        const auto type = oracle::Node::Type(texts.Number(0, 4));
        oracle::Node child;
        if (type == oracle::Node::Element)
            child = RandomNode(texts, depth - 1);
        else
            child = {.type = type, .text = texts.Next()};
        if (type == oracle::Node::Text) {
            // What is blank is no node, and two texts in a row are one.
            if (textBefore || child.text.trimmed().isEmpty())
                continue;
        } else if (type == oracle::Node::Cdata) {
            child.text.remove(u']');
        } else if (type == oracle::Node::Comment) {
            child.text.remove(u'-');
        } else if (type == oracle::Node::Instruction) {
            child.text = u"pi x"_s + child.text.remove(u'?').remove(u'\n').remove(u'\t').remove(u' ');
        }
        textBefore = type == oracle::Node::Text;
        node.children.append(child);
    }
    return node;
}

} // namespace

TEST(XmlNodes, AreFormattedAsTheTableTells)
{
    RandomText texts({u"x"_s, u" "_s, u"\t"_s, u"\n"_s, u"&"_s, u"<"_s, u">"_s, u"\""_s, u"'"_s, u"-"_s,
                      u"]"_s, u"?"_s, u"é"_s},
                     5);
    for (int run = 0; run < RandomRuns; ++run) {
        const oracle::Node node = RandomNode(texts, 3);
        const QByteArray source = oracle::Source(node).toUtf8();
        pugi::xml_document parsed;
        ASSERT_TRUE(parsed.load_buffer(source.constData(), std::size_t(source.size()),
                                       (pugi::parse_full & ~(pugi::parse_eol | pugi::parse_wconv_attribute)),
                                       pugi::encoding_utf8))
            << source.toStdString();
        const int level = texts.Number(0, 2);
        ASSERT_EQ(FormatXmlNode(parsed.document_element(), level), oracle::Format(node, nullptr, level))
            << source.toStdString();
    }
}

TEST(XmlNodes, OfADocumentAreItsChildren)
{
    pugi::xml_document parsed;
    ASSERT_TRUE(parsed.load_string("<!--a\nb--><?p q?><x>t</x>", pugi::parse_full));
    EXPECT_EQ(FormatXmlNode(parsed, 1), u"<!--a\r\nb-->\r\n\t<?p q?>\r\n<x>t</x>\r\n"_s);
    EXPECT_EQ(FormatXmlNode({}, 1), QString());
}

} // namespace zelvane::test
