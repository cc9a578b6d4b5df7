// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/runtimeerror.h"
#include "platform/textfile.h"
#include "platform/xdgfiletypes.h"
#include "preferences/fileassociations.h"
#include "support/boxes.h"
#include "support/printers.h"
#include "support/scripteddesktop.h"

#include <gtest/gtest.h>
#include <optional>
#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QMap>
#include <QProcess>
#include <QProcessEnvironment>
#include <QTemporaryDir>
#include <QThread>

using namespace Qt::Literals::StringLiterals;

namespace zelvane::test
{

namespace
{

const ExtensionFields Usual{u"orc"_s, u"sco"_s, u"csd"_s};

struct RecordedRegistry : FileTypeRegistry {
    std::optional<ProgramFiles> files;
    bool fails = false;
    void Register(const ProgramFiles &given) override
    {
        if (fails)
            throw RunTimeError(ErrorNumber::PermissionDenied, u"no"_s);
        files = given;
    }
};

MessageBoxRequest Question(const QString &extensions)
{
    return {.text = u"Zelvane will register the following file extensions: \n"_s + extensions +
                    u"\nYou'll be able to use the Run Csound dialog and the Presets directly from the shell "
                    "(really cool!). Do you want to continue?"_s,
            .icon = BoxIcon::Question,
            .buttons = BoxButtons::YesNo,
            .title = u"Associate extensions"_s};
}

const MessageBoxRequest Success{.text = u"Extensions have been succesfully associated with Zelvane"_s,
                                .icon = BoxIcon::Information};
const MessageBoxRequest Failure{.text = u"An error has occured while trying to write on the registry."_s,
                                .icon = BoxIcon::Critical};

TEST(FileAssociations, NoStops)
{
    ScriptedDesktop desktop;
    RecordedRegistry registry;
    desktop.ExpectMessage(Question(u"orc sco csd"_s), BoxAnswer::No);
    AssociateExtensions(Usual, desktop, registry);
    EXPECT_FALSE(registry.files);
}

TEST(FileAssociations, EachKindIsATypeAndEachCommandAVerb)
{
    ScriptedDesktop desktop;
    RecordedRegistry registry;
    desktop.ExpectMessage(Question(u"orc udo sco csd"_s), BoxAnswer::Yes);
    desktop.ExpectMessage(Success);
    AssociateExtensions({u" orc  udo"_s, u"sco "_s, u"csd"_s}, desktop, registry);
    ASSERT_TRUE(registry.files);
    const ProgramFiles &files = *registry.files;
    EXPECT_EQ(files.title, u"Zelvane"_s);
    EXPECT_EQ(files.description, u"Csound Document"_s);
    EXPECT_EQ(files.executable, QCoreApplication::applicationFilePath());
    ASSERT_EQ(files.types.size(), 3u);
    EXPECT_EQ(files.types[0].name, u"text/x-csound-orc"_s);
    EXPECT_EQ(files.types[0].extensions, QStringList({u"orc"_s, u"udo"_s}));
    EXPECT_EQ(files.types[1].name, u"text/x-csound-sco"_s);
    EXPECT_EQ(files.types[1].extensions, QStringList(u"sco"_s));
    EXPECT_EQ(files.types[2].name, u"text/x-csound-csd"_s);
    EXPECT_EQ(files.types[2].extensions, QStringList(u"csd"_s));
    ASSERT_EQ(files.verbs.size(), 3u);
    EXPECT_EQ(files.verbs[0].parameters, QString());
    EXPECT_EQ(files.verbs[1].caption, u"Run &Csound"_s);
    EXPECT_EQ(files.verbs[1].parameters, u"/r"_s);
    EXPECT_EQ(files.verbs[2].caption, u"Run Zelvane &Preset"_s);
    EXPECT_EQ(files.verbs[2].parameters, u"/p"_s);
}

TEST(FileAssociations, AnEmptyFieldIsNoFailure)
{
    ScriptedDesktop desktop;
    RecordedRegistry registry;
    desktop.ExpectMessage(Question(u"sco"_s), BoxAnswer::Yes);
    desktop.ExpectMessage(Success);
    AssociateExtensions({{}, u"sco"_s, u"  "_s}, desktop, registry);
    ASSERT_TRUE(registry.files);
    ASSERT_EQ(registry.files->types.size(), 1u);
    EXPECT_EQ(registry.files->types[0].name, u"text/x-csound-sco"_s);
}

TEST(FileAssociations, NeitherAreThree)
{
    ScriptedDesktop desktop;
    RecordedRegistry registry;
    desktop.ExpectMessage(Question({}), BoxAnswer::Yes);
    desktop.ExpectMessage(Success);
    AssociateExtensions({{}, u" "_s, {}}, desktop, registry);
    ASSERT_TRUE(registry.files);
    EXPECT_TRUE(registry.files->types.empty());
}

TEST(FileAssociations, AFailureIsTold)
{
    ScriptedDesktop desktop;
    RecordedRegistry registry;
    registry.fails = true;
    desktop.ExpectMessage(Question(u"orc sco csd"_s), BoxAnswer::Yes);
    desktop.ExpectMessage(Failure);
    AssociateExtensions(Usual, desktop, registry);
}

/// Keys of a desktop entry with their values, each behind the name of its group.
QMap<QString, QString> Keys(const QString &entry)
{
    QMap<QString, QString> keys;
    QString group;
    for (const QString &line : entry.split(u'\n', Qt::SkipEmptyParts)) {
        if (line.startsWith(u'['))
            group = line;
        else
            keys[group + line.section(u'=', 0, 0)] = line.section(u'=', 1);
    }
    return keys;
}

TEST(FileAssociations, ThePackageSaysTheSame)
{
    const QString data = QStringLiteral(ZELVANE_SOURCE_DIR "/data/desktop/");
    const ProgramFiles files = CsoundFiles(Usual, u"zelvane"_s, {});
    EXPECT_EQ(ReadTextFile(data + u"zelvane.xml"_s), MimePackageText(files, 50));
    const QMap<QString, QString> shipped = Keys(ReadTextFile(data + u"zelvane.desktop"_s));
    const QMap<QString, QString> made = Keys(EntryText(files, files.verbs.front()));
    for (const QString &key : shipped.keys() + made.keys())
        EXPECT_EQ(shipped.value(key, u"(none)"_s), made.value(key, u"(none)"_s)) << key.toStdString();
}

// With the tools of the desktop

/// A user's folders, a program that notes how it was started, and a look at what the desktop makes of it.
class OnTheDesktop : public ::testing::Test
{
protected:
    static constexpr int PatienceMs = 60000;

    OnTheDesktop()
    {
        QDir().mkpath(folder.path() + u"/pieces"_s);
        environment = QProcessEnvironment::systemEnvironment();
        environment.insert(u"HOME"_s, folder.path());
        environment.insert(u"XDG_DATA_HOME"_s, data);
        environment.insert(u"XDG_CONFIG_HOME"_s, config);
        environment.insert(u"XDG_CACHE_HOME"_s, folder.path() + u"/cache"_s);
        environment.insert(u"XDG_DATA_DIRS"_s, u"/usr/local/share:/usr/share"_s);
        environment.insert(u"DBUS_SESSION_BUS_ADDRESS"_s, u"disabled:"_s);
        for (const QString &name : {u"DISPLAY"_s, u"WAYLAND_DISPLAY"_s, u"XDG_CURRENT_DESKTOP"_s,
                                    u"KDE_FULL_SESSION"_s, u"GNOME_DESKTOP_SESSION_ID"_s})
            environment.remove(name);
    }

    QString MakeProgram(const QString &name)
    {
        const QString program = folder.path() + u'/' + name;
        QDir().mkpath(QFileInfo(program).path());
        // The note is whole when it is there.
        WriteFileBytes(program, "#!/bin/sh\nfor a in \"$@\"; do printf '%s\\n' \"$a\"; done > \"" +
                                    QFile::encodeName(Note()) + ".part\"\nmv \"" + QFile::encodeName(Note()) +
                                    ".part\" \"" + QFile::encodeName(Note()) + "\"\n");
        QFile::setPermissions(program, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        return program;
    }

    QString Piece(const QString &name, const QByteArray &bytes = "; a piece\n")
    {
        const QString piece = folder.path() + u"/pieces/"_s + name;
        WriteFileBytes(piece, bytes);
        return piece;
    }

    QString Run(const QString &program, const QStringList &arguments)
    {
        QProcess process;
        process.setProcessEnvironment(environment);
        process.setProgram(program);
        process.setArguments(arguments);
        process.setStandardInputFile(QProcess::nullDevice());
        process.start();
        EXPECT_TRUE(process.waitForFinished(PatienceMs)) << program.toStdString();
        EXPECT_EQ(process.exitCode(), 0) << process.readAllStandardError().toStdString();
        return QString::fromUtf8(process.readAllStandardOutput()).trimmed();
    }

    QString TypeOf(const QString &file)
    {
        return Run(u"gio"_s, {u"info"_s, u"--attributes=standard::content-type"_s, file})
            .section(u"standard::content-type: "_s, 1)
            .section(u'\n', 0, 0);
    }

    /// What the entry's program is given when the desktop starts it on a file.
    QStringList Launch(const QString &entry, const QString &file)
    {
        QFile::remove(Note());
        Run(u"gio"_s, {u"launch"_s, data + u"/applications/"_s + entry, file});
        const QDeadlineTimer limit(PatienceMs);
        while (!HasFailure() && !QFileInfo::exists(Note()) && !limit.hasExpired())
            QThread::msleep(10);
        if (!QFileInfo::exists(Note()))
            return {u"(not started)"_s};
        return QString::fromUtf8(ReadFileBytes(Note())).split(u'\n', Qt::SkipEmptyParts);
    }

    QString Note() const { return folder.path() + u"/note"_s; }

    QTemporaryDir folder;
    QString data = folder.path() + u"/data"_s;
    QString config = folder.path() + u"/config"_s;
    QProcessEnvironment environment;
};

TEST_F(OnTheDesktop, FilesAreKnownAndOpenedByTheProgram)
{
    const QString program = MakeProgram(u"bin/zelvane"_s);
    XdgFileTypes({data, config}).Register(CsoundFiles({u"orc udo"_s, u"sco"_s, u"csd"_s}, program, "<svg/>"));

    const QString score = Piece(u"my score.SCO"_s);
    EXPECT_EQ(TypeOf(score), u"text/x-csound-sco"_s);
    EXPECT_EQ(TypeOf(Piece(u"a.udo"_s)), u"text/x-csound-orc"_s);
    EXPECT_EQ(TypeOf(Piece(u"b.csd"_s)), u"text/x-csound-csd"_s);
    for (const QByteArray &tag :
         QByteArrayList{"CsoundSynthesizer", "csoundsynthesizer", "CSOUNDSYNTHESIZER", "CsoundSynthesiser",
                        "csoundsynthesiser", "CSOUNDSYNTHESISER"})
        EXPECT_EQ(TypeOf(Piece(u"unnamed"_s, "; a note\n<" + tag + ">\n</" + tag + ">\n")),
                  u"text/x-csound-csd"_s)
            << tag.toStdString();
    for (const QString &kind : {u"orc"_s, u"sco"_s, u"csd"_s}) {
        const QString type = u"text/x-csound-"_s + kind;
        EXPECT_EQ(Run(u"xdg-mime"_s, {u"query"_s, u"default"_s, type}), u"zelvane.desktop"_s);
        const QString known = Run(u"gio"_s, {u"mime"_s, type});
        EXPECT_TRUE(known.section(u'\n', 0, 0).endsWith(u" zelvane.desktop"_s)) << known.toStdString();
        EXPECT_TRUE(known.contains(u"zelvane-runcsound.desktop"_s)) << known.toStdString();
    }
    for (const QString &entry : {u"zelvane"_s, u"zelvane-runcsound"_s, u"zelvane-preset"_s})
        Run(u"desktop-file-validate"_s, {data + u"/applications/"_s + entry + u".desktop"_s});

    EXPECT_EQ(Launch(u"zelvane.desktop"_s, score), QStringList(score));
    EXPECT_EQ(Launch(u"zelvane-runcsound.desktop"_s, score), QStringList({u"/r"_s, score}));
    EXPECT_EQ(Launch(u"zelvane-preset.desktop"_s, score), QStringList({u"/p"_s, score}));
}

TEST_F(OnTheDesktop, TheProgramMayLieAnywhere)
{
    const QString program = MakeProgram(u"a \"b\" $c \\ 'd' `e`/zelvane"_s);
    XdgFileTypes({data, config}).Register(CsoundFiles(Usual, program, {}));
    const QString piece = Piece(u"100% %f \"x\" $HOME.csd"_s);
    EXPECT_EQ(Launch(u"zelvane.desktop"_s, piece), QStringList(piece));
    EXPECT_EQ(Launch(u"zelvane-preset.desktop"_s, piece), QStringList({u"/p"_s, piece}));
    Run(u"desktop-file-validate"_s, {data + u"/applications/zelvane.desktop"_s});
}

TEST_F(OnTheDesktop, AnEarlierChoiceGivesWay)
{
    ASSERT_TRUE(QDir().mkpath(config));
    WriteFileBytes(config + u"/mimeapps.list"_s,
                   "[Default Applications]\ntext/x-csound-csd=zelvane-preset.desktop\n");
    const ProgramFiles files = CsoundFiles(Usual, MakeProgram(u"bin/zelvane"_s), {});
    XdgFileTypes({data, config}).Register(files);
    EXPECT_EQ(Run(u"xdg-mime"_s, {u"query"_s, u"default"_s, u"text/x-csound-csd"_s}), u"zelvane.desktop"_s);
}

TEST_F(OnTheDesktop, AChoiceOfTheSystemGivesWay)
{
    const QString system = folder.path() + u"/system"_s;
    environment.insert(u"XDG_CONFIG_DIRS"_s, system);
    // A rival that is there, else no reader minds the choice.
    const QString rival = data + u"/applications/rival.desktop"_s;
    for (const QString &made : {system, QFileInfo(rival).path()})
        ASSERT_TRUE(QDir().mkpath(made));
    WriteFileBytes(rival, "[Desktop Entry]\nType=Application\nName=Rival\nExec=/bin/true %f\n"
                          "MimeType=text/x-csound-csd;text/x-csound-sco;\n");
    WriteFileBytes(system + u"/mimeapps.list"_s,
                   "[Default Applications]\ntext/x-csound-csd=rival.desktop\n"
                   "[Removed Associations]\ntext/x-csound-sco=zelvane.desktop;\n");
    const ProgramFiles files = CsoundFiles(Usual, MakeProgram(u"bin/zelvane"_s), {});
    XdgFileTypes({data, config}).Register(files);
    const auto opens = [&](const QString &kind) {
        return Run(u"gio"_s, {u"mime"_s, u"text/x-csound-"_s + kind}).section(u'\n', 0, 0).section(u' ', -1);
    };
    EXPECT_EQ(opens(u"csd"_s), u"rival.desktop"_s) << "the desktop does not mind the system's list";
    XdgFileTypes({.data = data, .config = config, .systemConfig = {system}}).Register(files);
    EXPECT_EQ(opens(u"csd"_s), u"zelvane.desktop"_s);
    EXPECT_EQ(opens(u"sco"_s), u"zelvane.desktop"_s);
    EXPECT_TRUE(Run(u"gio"_s, {u"mime"_s, u"text/x-csound-sco"_s}).contains(u"zelvane-preset.desktop"_s));
}

TEST_F(OnTheDesktop, TwoTypesWithOneNameAreTheFirstOne)
{
    XdgFileTypes({data, config})
        .Register(CsoundFiles({u"piece"_s, u"piece sco"_s, {}}, MakeProgram(u"bin/zelvane"_s), {}));
    EXPECT_EQ(TypeOf(Piece(u"a.piece"_s)), u"text/x-csound-orc"_s);
    EXPECT_EQ(TypeOf(Piece(u"a.sco"_s)), u"text/x-csound-sco"_s);
}

TEST_F(OnTheDesktop, WithoutExtensionsNothingIsOpenedByTheProgram)
{
    XdgFileTypes({data, config}).Register(CsoundFiles({}, MakeProgram(u"bin/zelvane"_s), {}));
    for (const QString &entry : {u"zelvane"_s, u"zelvane-runcsound"_s, u"zelvane-preset"_s}) {
        const QString name = data + u"/applications/"_s + entry + u".desktop"_s;
        EXPECT_EQ(Run(u"desktop-file-validate"_s, {name}), QString());
        EXPECT_FALSE(ReadTextFile(name).contains(u"MimeType"_s));
    }
    EXPECT_FALSE(QFileInfo::exists(data + u"/applications/mimeapps.list"_s));
    EXPECT_EQ(TypeOf(Piece(u"a.qqq"_s)), u"text/plain"_s);
}

} // namespace

} // namespace zelvane::test
