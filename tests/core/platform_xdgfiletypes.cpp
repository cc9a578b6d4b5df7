// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/associationlists.h"
#include "platform/fileoperations.h"
#include "platform/runtimeerror.h"
#include "platform/textfile.h"
#include "platform/xdgfiletypes.h"
#include "support/childprocess.h"
#include "support/printers.h"
#include "support/randomtext.h"

#include <csignal>
#include <gtest/gtest.h>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <sys/types.h>

using namespace zelvane;
using namespace Qt::Literals::StringLiterals;

namespace
{

ProgramFiles Example(const QString &executable)
{
    return {.title = u"Example"_s,
            .kind = u"Kind"_s,
            .summary = u"A \\ summary"_s,
            .keywords = {u"one"_s, u"t;wo"_s},
            .description = u"One & two"_s,
            .executable = executable,
            .icon = "<svg/>",
            .types = {{u"text/x-a"_s, {u"AA"_s, u"a[1]"_s}}, {u"text/x-b"_s, {u"bb"_s, u"aa"_s}, {u"<B"_s}}},
            .verbs = {{.caption = u"Example"_s},
                      {.key = u"other"_s, .caption = u"Do &It"_s, .parameters = u"/x"_s}},
            .actions = {{.key = u"new"_s, .caption = u"New"_s, .parameters = u"/i"_s}}};
}

QString ValueOf(const QString &entry, const QString &key)
{
    for (const QString &line : entry.split(u'\n'))
        if (line.startsWith(key + u'='))
            return line.sliced(key.size() + 1);
    return u"(no line)"_s;
}

TEST(XdgFileTypes, AnEntryForEachVerb)
{
    const ProgramFiles example = Example(u"/usr/bin/example"_s);
    EXPECT_EQ(EntryName(example, example.verbs[0]), u"example.desktop"_s);
    EXPECT_EQ(EntryText(example, example.verbs[0]), u"[Desktop Entry]\n"
                                                    "Type=Application\n"
                                                    "Version=1.0\n"
                                                    "Name=Example\n"
                                                    "GenericName=Kind\n"
                                                    "Comment=A \\\\ summary\n"
                                                    "Keywords=one;t\\;wo;\n"
                                                    "Exec=/usr/bin/example %f\n"
                                                    "TryExec=/usr/bin/example\n"
                                                    "Icon=example\n"
                                                    "Terminal=false\n"
                                                    "Categories=AudioVideo;Audio;AudioVideoEditing;\n"
                                                    "MimeType=text/x-a;text/x-b;\n"
                                                    "StartupNotify=true\n"
                                                    "StartupWMClass=example\n"
                                                    "Actions=new;\n"
                                                    "\n"
                                                    "[Desktop Action new]\n"
                                                    "Name=New\n"
                                                    "Exec=/usr/bin/example /i\n"_s);
    EXPECT_EQ(EntryName(example, example.verbs[1]), u"example-other.desktop"_s);
    EXPECT_EQ(EntryText(example, example.verbs[1]), u"[Desktop Entry]\n"
                                                    "Type=Application\n"
                                                    "Version=1.0\n"
                                                    "Name=Do It\n"
                                                    "Exec=/usr/bin/example /x %f\n"
                                                    "TryExec=/usr/bin/example\n"
                                                    "Icon=example\n"
                                                    "Terminal=false\n"
                                                    "NoDisplay=true\n"
                                                    "MimeType=text/x-a;text/x-b;\n"
                                                    "StartupNotify=true\n"
                                                    "StartupWMClass=example\n"_s);
}

TEST(XdgFileTypes, AProgramInQuotesWhereItNeedsThem)
{
    const auto command = [](const QString &executable) {
        const ProgramFiles example = Example(executable);
        return ValueOf(EntryText(example, example.verbs[0]), u"Exec"_s);
    };
    EXPECT_EQ(command(u"/opt/a-b.c_d+/x"_s), u"/opt/a-b.c_d+/x %f"_s);
    EXPECT_EQ(command(u"/a b/x"_s), u"\"/a b/x\" %f"_s);
    EXPECT_EQ(command(u"/50%/x"_s), u"/50%%/x %f"_s);
    EXPECT_EQ(command(u"/a\"b`$c/x"_s), u"\"/a\\\\\"b\\\\`\\\\$c/x\" %f"_s);
    EXPECT_EQ(command(u"/a\\b/x"_s), u"\"/a\\\\\\\\b/x\" %f"_s);
    EXPECT_EQ(command(u"/a\tb\n/x"_s), u"\"/a\\tb\\n/x\" %f"_s);
}

/// A user's entries of the example.
class MovedProgram : public ::testing::Test
{
protected:
    QString Name(size_t verb) const
    {
        return place.data + u"/applications/"_s + EntryName(here, here.verbs[verb]);
    }

    void Write(size_t verb, const QString &text)
    {
        QDir().mkpath(place.data + u"/applications"_s);
        WriteFileBytes(Name(verb), text.toUtf8());
    }

    QString Followed(size_t verb)
    {
        FollowProgram(here, place);
        return QString::fromUtf8(ReadFileBytes(Name(verb)));
    }

    QTemporaryDir folder;
    XdgPlace place{.data = folder.path() + u"/data"_s, .config = folder.path() + u"/config"_s};
    ProgramFiles here = Example(u"/new place/50%/example"_s);
};

TEST_F(MovedProgram, IsFollowedByTheEntriesOfAll)
{
    const ProgramFiles before = Example(folder.path() + u"/a \\ \"b\" 100%/example"_s);
    for (size_t verb = 0; verb < here.verbs.size(); ++verb) {
        const QString own = u"X-Mine=a note\nName[de]=Beispiel\n"_s;
        Write(verb, EntryText(before, before.verbs[verb]) + own);
        EXPECT_EQ(Followed(verb), EntryText(here, here.verbs[verb]) + own);
    }
}

TEST_F(MovedProgram, StaysWhereItIs)
{
    ProgramFiles before = Example(folder.path() + u"/example"_s);
    WriteFileBytes(before.executable, "a program");
    const QString entry = EntryText(before, before.verbs[0]);
    Write(0, entry);
    EXPECT_EQ(Followed(0), entry);
    QFile::remove(before.executable);
    EXPECT_EQ(Followed(0), EntryText(here, here.verbs[0]));
}

TEST_F(MovedProgram, IsNoneWithoutItsPath)
{
    for (const QString &entry : {u"[Desktop Entry]\nExec=example %f\nTryExec=example\n"_s,
                                 u"[Desktop Entry]\nExec=/gone/example %f\n"_s, u"TryExec="_s, QString()}) {
        Write(0, entry);
        EXPECT_EQ(Followed(0), entry);
    }
}

TEST_F(MovedProgram, LeavesWhatTheUserStartsOtherwise)
{
    Write(0,
          u"[Desktop Entry]\nExec=env A=1 /gone/example %f\nTryExec=/gone/example\nExec=/gone/examples\n"_s);
    EXPECT_EQ(Followed(0), u"[Desktop Entry]\nExec=env A=1 /gone/example %f\n"
                           "TryExec=/new place/50%/example\nExec=/gone/examples\n"_s);
}

TEST_F(MovedProgram, MakesNoEntry)
{
    FollowProgram(here, place);
    EXPECT_FALSE(QFileInfo::exists(place.data));
}

TEST(XdgFileTypes, AnExtensionBelongsToTheFirstType)
{
    EXPECT_EQ(MimePackageText(Example(u"/x"_s), 60),
              u"<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
              "<mime-info xmlns=\"http://www.freedesktop.org/standards/shared-mime-info\">\n"
              "  <mime-type type=\"text/x-a\">\n"
              "    <comment>One &amp; two</comment>\n"
              "    <icon name=\"example\"/>\n"
              "    <sub-class-of type=\"text/plain\"/>\n"
              "    <glob pattern=\"*.aa\" weight=\"60\"/>\n"
              "    <glob pattern=\"*.a[[]1]\" weight=\"60\"/>\n"
              "  </mime-type>\n"
              "  <mime-type type=\"text/x-b\">\n"
              "    <comment>One &amp; two</comment>\n"
              "    <icon name=\"example\"/>\n"
              "    <sub-class-of type=\"text/plain\"/>\n"
              "    <magic priority=\"50\">\n"
              "      <match type=\"string\" offset=\"0:1024\" value=\"&lt;B\"/>\n"
              "    </magic>\n"
              "    <glob pattern=\"*.bb\" weight=\"60\"/>\n"
              "  </mime-type>\n"
              "</mime-info>\n"_s);
    EXPECT_FALSE(MimePackageText(Example(u"/x"_s), 50).contains(u"weight"_s));
}

TEST(Associations, AreAddedAtTheEndOfTheirGroup)
{
    const QByteArrayList types = {"t/a", "t/b"};
    const QByteArrayList entries = {"x.desktop", "y.desktop"};
    EXPECT_EQ(WithAssociations({}, "G", types, entries),
              "[G]\nt/a=x.desktop;y.desktop;\nt/b=x.desktop;y.desktop;\n");
    EXPECT_EQ(WithAssociations("[G]", "G", {"t/a"}, {"x"}), "[G]\nt/a=x;\n");
    EXPECT_EQ(WithAssociations("; note\n[F]\nt/a=f", "G", {"t/a"}, {"x"}),
              "; note\n[F]\nt/a=f\n\n[G]\nt/a=x;\n");
    EXPECT_EQ(WithAssociations("[G]\nt/z=z\n\n\n[F]\nt/a=f\n", "G", {"t/a"}, {"x"}),
              "[G]\nt/z=z\nt/a=x;\n\n\n[F]\nt/a=f\n");
}

TEST(Associations, GoBeforeThoseThatStandThere)
{
    const QByteArray list = "[F]\nt/a=f;\n[G]\n t/a = o.desktop;x.desktop;;p.desktop\nt/ab=q\n";
    EXPECT_EQ(WithAssociations(list, "G", {"t/a"}, {"x.desktop"}),
              "[F]\nt/a=f;\n[G]\nt/a=x.desktop;o.desktop;p.desktop;\nt/ab=q\n");
    EXPECT_EQ(WithAssociations("[G]\nt/a=\n", "G", {"t/a"}, {"x"}), "[G]\nt/a=x;\n");
    // A group or a line that is there twice.
    EXPECT_EQ(
        WithAssociations("[G]\nt/a=o;\nt/b=b;\nt/a=p;o;\n[F]\n[G]\n# note\nt/a=q;\n", "G", {"t/a"}, {"x"}),
        "[G]\nt/a=x;o;p;q;\nt/b=b;\n[F]\n[G]\n# note\n");
    EXPECT_EQ(WithAssociations("[G]\n\n[F]\n[G]\nt/a=o;\n", "G", {"t/b"}, {"x"}),
              "[G]\nt/b=x;\n\n[F]\n[G]\nt/a=o;\n");
}

TEST(Associations, AreRemovedWithTheirLine)
{
    const QByteArray list = "[G]\nt/a=x;o;\nt/b=x\n\nt/c=o\n[F]\nt/b=x\n";
    EXPECT_EQ(WithoutAssociations(list, "G", {"t/a", "t/b", "t/c", "t/d"}, {"x", "y"}),
              "[G]\nt/a=o;\n\nt/c=o\n[F]\nt/b=x\n");
    EXPECT_EQ(WithoutAssociations(list, "none", {"t/a"}, {"x"}), list);
    EXPECT_EQ(WithoutAssociations("[G]\nt/a=o;\n[F]\n[G]\nt/a=x;p;\n", "G", {"t/a"}, {"x"}),
              "[G]\nt/a=o;p;\n[F]\n[G]\n");
    EXPECT_EQ(TypesIn(list, "G", {"t/a", "t/x", "t/c"}), QByteArrayList({"t/a", "t/c"}));
    EXPECT_EQ(TypesIn("", "G", {"t/a"}), QByteArrayList());
}

/// What a line by line reading of the list says of a type: all that its lines name.
QByteArrayList EntriesOf(const QByteArray &list, const QByteArray &group, const QByteArray &type)
{
    QByteArray current;
    QByteArrayList entries;
    for (const QByteArray &line : list.split('\n')) {
        if (line.trimmed().startsWith('['))
            current = line.trimmed();
        else if (current == '[' + group + ']' && line.contains('=') &&
                 line.left(line.indexOf('=')).trimmed() == type) {
            for (const QByteArray &entry : line.mid(line.indexOf('=') + 1).trimmed().split(';'))
                if (!entry.isEmpty() && !entries.contains(entry))
                    entries.append(entry);
        }
    }
    return entries;
}

TEST(Associations, NothingElseOfAListChanges)
{
    test::RandomText texts({u"[G]\n"_s, u"[F]\n"_s, u"t/a=x;o\n"_s, u"t/b = o;\n"_s, u"\n"_s, u"# n\n"_s,
                            u"t/a="_s, u"junk\n"_s, u" [G] \n"_s},
                           8);
    for (int i = 0; i < 5000; ++i) {
        const QByteArray list = texts.Next().toUtf8();
        SCOPED_TRACE(list.toStdString());
        const QByteArray with = WithAssociations(list, "G", {"t/a"}, {"x", "y"});
        const QByteArrayList had = EntriesOf(list, "G", "t/a");
        QByteArrayList expected = {"x", "y"};
        for (const QByteArray &entry : had)
            if (!expected.contains(entry))
                expected.append(entry);
        ASSERT_EQ(EntriesOf(with, "G", "t/a"), expected);
        ASSERT_EQ(WithAssociations(with, "G", {"t/a"}, {"x", "y"}), with) << "the second time is the first";
        // What is not the line itself stays, in its order.
        QByteArrayList before = list.split('\n');
        QByteArrayList after = with.split('\n');
        const auto other = [](const QByteArray &line) {
            return line.trimmed().isEmpty() || line.startsWith("t/a=") || line.trimmed() == "[G]";
        };
        before.removeIf(other);
        after.removeIf(other);
        ASSERT_EQ(after, before);
    }
}

/// Stands in for a tool of the desktop, as long as it lives.
class ToolInPlace
{
public:
    ToolInPlace(const QString &folder, const QByteArray &script,
                const QString &name = u"update-mime-database"_s)
    {
        const QString bin = folder + u"/bin"_s;
        const QString tool = bin + u'/' + name;
        EXPECT_TRUE(QDir().mkpath(bin));
        WriteFileBytes(tool, script);
        EXPECT_TRUE(QFile::setPermissions(tool, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
        qputenv("PATH", QFile::encodeName(bin) + ':' + m_path);
    }
    ~ToolInPlace() { qputenv("PATH", m_path); }
    Q_DISABLE_COPY_MOVE(ToolInPlace)

private:
    QByteArray m_path = qgetenv("PATH");
};

/// A user who stops the work when a file is whole.
struct Stopping : WorkProgress {
    explicit Stopping(const QString &name) : file(name) {}
    void Begin(const QString &what) override { told = what; }
    bool GoOn(qint64, qint64) override
    {
        return !QFileInfo::exists(file) || !ReadFileBytes(file).endsWith('\n');
    }
    void End() override { ended = true; }

    QString file;
    QString told;
    bool ended = false;
};

class Registering : public ::testing::Test
{
protected:
    QTemporaryDir folder;
    QString data = folder.path() + u"/data"_s;
    QString config = folder.path() + u"/config"_s;
    QString system = folder.path() + u"/system"_s;
    XdgFileTypes registry{{data, config, {u"Some"_s, u"Other"_s}, {folder.path() + u"/none"_s, system}}};
    ProgramFiles example = Example(u"/usr/bin/example"_s);

    void Put(const QString &name, const QByteArray &bytes)
    {
        QDir().mkpath(QFileInfo(name).path());
        WriteFileBytes(name, bytes);
    }
    void ExpectWhole()
    {
        EXPECT_EQ(ReadFileBytes(data + u"/applications/example.desktop"_s),
                  EntryText(example, example.verbs[0]).toUtf8());
        EXPECT_EQ(ReadFileBytes(data + u"/applications/example-other.desktop"_s),
                  EntryText(example, example.verbs[1]).toUtf8());
        EXPECT_EQ(ReadFileBytes(data + u"/mime/packages/example.xml"_s),
                  MimePackageText(example, 60).toUtf8());
        EXPECT_TRUE(ReadFileBytes(data + u"/mime/globs2"_s).contains("60:text/x-a:*.aa\n"));
        EXPECT_EQ(ReadFileBytes(data + u"/icons/hicolor/scalable/apps/example.svg"_s), "<svg/>");
        EXPECT_EQ(ReadFileBytes(data + u"/applications/mimeapps.list"_s),
                  "[Added Associations]\n"
                  "text/x-a=example.desktop;example-other.desktop;\n"
                  "text/x-b=example.desktop;example-other.desktop;\n"
                  "\n"
                  "[Default Applications]\n"
                  "text/x-a=example.desktop;\n"
                  "text/x-b=example.desktop;\n");
    }
};

TEST_F(Registering, WritesAllUnderTheDataFolder)
{
    registry.Register(example);
    ExpectWhole();
    EXPECT_FALSE(QFileInfo::exists(config)) << "nothing there says otherwise";
    registry.Register(example);
    ExpectWhole();
}

TEST_F(Registering, ChangesListsThatSayOtherwise)
{
    Put(config + u"/mimeapps.list"_s,
        "[Default Applications]\ntext/x-b=rival.desktop\ntext/html=web.desktop\n"
        "[Removed Associations]\ntext/x-a=example.desktop;rival.desktop;\n");
    Put(config + u"/some-mimeapps.list"_s, "[Default Applications]\ntext/html=web.desktop\n");
    Put(data + u"/applications/other-mimeapps.list"_s, "[Default Applications]\ntext/x-a=rival.desktop;\n");
    registry.Register(example);
    EXPECT_EQ(ReadFileBytes(config + u"/mimeapps.list"_s),
              "[Default Applications]\ntext/x-b=example.desktop;rival.desktop;\ntext/html=web.desktop\n"
              "[Removed Associations]\ntext/x-a=rival.desktop;\n");
    EXPECT_EQ(ReadFileBytes(config + u"/some-mimeapps.list"_s),
              "[Default Applications]\ntext/html=web.desktop\n");
    EXPECT_EQ(ReadFileBytes(data + u"/applications/other-mimeapps.list"_s),
              "[Default Applications]\ntext/x-a=example.desktop;rival.desktop;\n");
    ExpectWhole();
}

TEST_F(Registering, AFailureAtAnyStepCanBeRepeated)
{
    // A folder where a file is to be, and a file where a folder is to be.
    for (const QString &place :
         {u"/mime"_s, u"/mime/packages/example.xml"_s, u"/icons/hicolor/scalable/apps/example.svg"_s,
          u"/applications"_s, u"/applications/example.desktop"_s, u"/applications/example-other.desktop"_s,
          u"/applications/mimeapps.list"_s}) {
        SCOPED_TRACE(place.toStdString());
        const bool isFolder = !place.contains(u'.');
        const QString own = folder.path() + place.section(u'/', -1) + QString::number(isFolder);
        const QString obstacle = own + place;
        XdgFileTypes there({own, config});
        if (isFolder)
            Put(obstacle, "in the way");
        else
            ASSERT_TRUE(QDir().mkpath(obstacle));
        EXPECT_THROW(there.Register(example), RunTimeError);
        EXPECT_FALSE(QFileInfo(own + u"/applications/mimeapps.list"_s).isFile())
            << "no default without the rest";
        ASSERT_TRUE(isFolder ? QFile::remove(obstacle) : QDir().rmdir(obstacle));
        there.Register(example);
        data = own;
        ExpectWhole();
        EXPECT_FALSE(test::NamesIn(own + u"/applications"_s).join(u' ').contains(u'~'));
    }
}

TEST_F(Registering, SystemListsAreOutrankedByTheUsers)
{
    const QByteArray rival = "[Default Applications]\ntext/x-b=rival.desktop;\n";
    Put(system + u"/other-mimeapps.list"_s, rival);
    Put(system + u"/mimeapps.list"_s, "[Removed Associations]\ntext/x-a=example-other.desktop;\n");
    Put(config + u"/mimeapps.list"_s, "[Added Associations]\ntext/html=web.desktop;\n");
    registry.Register(example);
    EXPECT_EQ(
        ReadFileBytes(config + u"/mimeapps.list"_s),
        "[Added Associations]\ntext/html=web.desktop;\ntext/x-a=example.desktop;example-other.desktop;\n"
        "\n[Default Applications]\ntext/x-b=example.desktop;\n");
    EXPECT_EQ(ReadFileBytes(system + u"/other-mimeapps.list"_s), rival);
    ExpectWhole();
}

TEST_F(Registering, AListThatCannotBeChangedLeavesNoDefault)
{
    const QString users = config + u"/mimeapps.list"_s;
    const QString own = data + u"/applications/mimeapps.list"_s;
    Put(own, "[Default Applications]\ntext/html=web.desktop;\n");
    const QByteArray before = ReadFileBytes(own);
    // One that cannot be read.
    ASSERT_TRUE(QDir().mkpath(users));
    EXPECT_THROW(registry.Register(example), RunTimeError);
    EXPECT_EQ(ReadFileBytes(own), before);
    // And one that would have to be written where nothing can be.
    ASSERT_TRUE(QDir().rmdir(users));
    Put(system + u"/mimeapps.list"_s, "[Default Applications]\ntext/x-a=rival.desktop;\n");
    ASSERT_TRUE(QFile::link(u"/proc/none/mimeapps.list"_s, users));
    EXPECT_THROW(registry.Register(example), RunTimeError);
    EXPECT_EQ(ReadFileBytes(own), before);
    ASSERT_TRUE(QFile::remove(users));
    registry.Register(example);
    EXPECT_EQ(ReadFileBytes(users), "[Default Applications]\ntext/x-a=example.desktop;\n");
    EXPECT_TRUE(ReadFileBytes(own).contains("text/x-a=example.desktop;\n"));
    EXPECT_TRUE(ReadFileBytes(own).contains("text/html=web.desktop;\n"));
}

TEST_F(Registering, AToolThatHangsIsEnded)
{
    const QString note = folder.path() + u"/tool"_s;
    const ToolInPlace tool(folder.path(),
                           "#!/bin/sh\necho $$ > '" + QFile::encodeName(note) + "'\nexec sleep 600\n");
    const auto ended = [&] {
        bool found = false;
        const pid_t process = ReadFileBytes(note).trimmed().toInt(&found);
        return found && kill(process, 0) != 0;
    };
    // By the user.
    Stopping progress(note);
    XdgFileTypes stopped({data, config}, &progress, 3'600'000);
    EXPECT_THROW(stopped.Register(example), RunTimeError);
    EXPECT_TRUE(ended());
    EXPECT_EQ(progress.told, u"Registering file types..."_s);
    EXPECT_TRUE(progress.ended);
    // By itself after a while.
    XdgFileTypes patient({data, config}, nullptr, 100);
    EXPECT_THROW(patient.Register(example), RunTimeError);
    EXPECT_FALSE(QFileInfo::exists(data + u"/applications"_s));
}

TEST_F(Registering, AToolThatIsNotNeededMayHang)
{
    registry.Register(example);
    ASSERT_TRUE(QFile::remove(data + u"/applications/mimeapps.list"_s));
    const QString note = folder.path() + u"/tool"_s;
    const ToolInPlace quick(folder.path(), "#!/bin/sh\nexit 0\n"); // the types are known already
    const ToolInPlace tool(folder.path(),
                           "#!/bin/sh\necho $$ > '" + QFile::encodeName(note) + "'\nexec sleep 600\n",
                           u"update-desktop-database"_s);
    // The user who stops it wants nothing of all this.
    Stopping progress(note);
    XdgFileTypes stopped({data, config}, &progress, 3'600'000);
    EXPECT_THROW(stopped.Register(example), RunTimeError);
    EXPECT_FALSE(QFileInfo::exists(data + u"/applications/mimeapps.list"_s));
    // Patience enough for the tools that work, on a slow machine too.
    XdgFileTypes patient({data, config}, nullptr, 6000);
    patient.Register(example);
    ExpectWhole();
}

TEST_F(Registering, AToolThatFailsOrIsNotThereIsAFailure)
{
    const QByteArray path = qgetenv("PATH");
    {
        const ToolInPlace tool(folder.path(), "#!/bin/sh\nexit 1\n");
        EXPECT_THROW(registry.Register(example), RunTimeError);
    }
    qputenv("PATH", QFile::encodeName(folder.path() + u"/none"_s));
    EXPECT_THROW(registry.Register(example), RunTimeError);
    qputenv("PATH", path);
    registry.Register(example);
    ExpectWhole();
}

} // namespace
