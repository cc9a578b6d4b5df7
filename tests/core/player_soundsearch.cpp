// SPDX-License-Identifier: GPL-3.0-or-later
#include "player/soundsearch.h"

#include "platform/runtimeerror.h"
#include "shell/editorcontext.h"
#include "support/testcontext.h"

#include <gtest/gtest.h>
#include <QDir>
#include <QFile>

using namespace Qt::Literals::StringLiterals;

namespace zelvane::test
{

namespace
{

class SoundSearch : public ::testing::Test
{
protected:
    SoundSearch()
    {
        for (const QString &name : {u"sf"_s, u"ss"_s})
            EXPECT_TRUE(QDir(context.folder.path()).mkpath(name));
        context.desktop.environment[u"SFDIR"_s] = context.folder.filePath(u"sf"_s);
        context.desktop.environment[u"SSDIR"_s] = context.folder.filePath(u"ss"_s);
        context.document.CurrentFile = context.WriteFile(u"my piece.orc"_s);
    }

    FileDialogRequest Dialog() const
    {
        return {.title = u"Select a soundfile"_s,
                .filters = {{u"All supported types"_s,
                             u"*.wav;*.aif;*.aiff;*.aifc;*.au;*.snd;*.mp*;*.m3u;*.m1v;*.enc;"
                             "*.avi;*.mov;*.qt;*.mid;*.rmi"_s},
                            {u"Audio files"_s, u"*.wav;*.snd;*.au;*.aif;*.aifc;*.aiff"_s},
                            {u"Wave files"_s, u"*.wav"_s},
                            {u"AIFF files"_s, u"*.aif;*.aiff;*aifc"_s},
                            {u"QuickTime files"_s, u"*.mov;*.qt"_s},
                            {u"Next/Sun files"_s, u"*.au;*.snd"_s},
                            {u"MIDI files"_s, u"*.mid;*.rmi"_s},
                            {u"MPEG files"_s, u"*.mp*;*.m3u;*.m1v"_s},
                            {u"Video for Windows files"_s, u"*.avi"_s},
                            {u"All Files"_s, u"*"_s}},
                .folder = context.folder.path()};
    }

    TestContext context;
};

/// A desktop whose file picker fails.
struct FailingPicker : ScriptedDesktop {
    FileDialogAnswer OpenFileDialog(const FileDialogRequest &) override
    {
        throw RunTimeError(ErrorNumber::DeviceError, u"no picker"_s);
    }
};

TEST_F(SoundSearch, ExtensionsComeBeforeFolders)
{
    const QStringList inOrder{u"my piece.wav"_s,  u"sf/my piece.wav"_s,  u"ss/my piece.wav"_s,
                              u"my piece.aif"_s,  u"sf/my piece.aif"_s,  u"ss/my piece.aif"_s,
                              u"my piece.aiff"_s, u"sf/my piece.aiff"_s, u"ss/my piece.aiff"_s};
    for (const QString &name : inOrder)
        context.WriteFile(name);
    for (const QString &name : inOrder) {
        EXPECT_EQ(SearchSoundFile(false, context.editor), context.folder.filePath(name));
        EXPECT_TRUE(QFile::remove(context.folder.filePath(name)));
    }
    EXPECT_EQ(SearchSoundFile(true, context.editor), QString());
}

TEST_F(SoundSearch, NoFolderAndNoOtherExtensionIsASound)
{
    EXPECT_TRUE(QDir(context.folder.path()).mkpath(u"my piece.wav"_s));
    context.WriteFile(u"my piece.au"_s);
    context.WriteFile(u"piece.wav"_s);
    EXPECT_EQ(SearchSoundFile(true, context.editor), QString());
}

TEST_F(SoundSearch, AFolderThatIsNotSetIsNotSearched)
{
    context.desktop.environment.clear();
    context.WriteFile(u"sf/my piece.wav"_s);
    EXPECT_EQ(SearchSoundFile(true, context.editor), QString());
}

TEST_F(SoundSearch, TheUserPicksWhereThereIsNone)
{
    context.desktop.ExpectOpenDialog(Dialog(), {u"/sounds/other.mp3"_s});
    EXPECT_EQ(SearchSoundFile(false, context.editor), u"/sounds/other.mp3"_s);
    context.desktop.ExpectOpenDialog(Dialog(), {});
    EXPECT_EQ(SearchSoundFile(false, context.editor), QString());
}

TEST_F(SoundSearch, ADocumentThatIsNotOnDiskHasNone)
{
    context.WriteFile(u"gone.wav"_s);
    context.document.CurrentFile = context.folder.filePath(u"gone.orc"_s);
    EXPECT_EQ(SearchSoundFile(false, context.editor), QString());
    context.document.CurrentFile.clear();
    EXPECT_EQ(SearchSoundFile(false, context.editor), QString());
}

TEST_F(SoundSearch, AFailureIsShown)
{
    FailingPicker desktop;
    desktop.ExpectMessage(
        {.text = u"An error has occurred while searching for a sound file."_s, .icon = BoxIcon::Warning});
    EditorContext editor{context.document, context.text,    context.settings,  desktop,
                         context.status,   context.windows, context.operations};
    EXPECT_EQ(SearchSoundFile(false, editor), QString());
}

} // namespace

} // namespace zelvane::test
