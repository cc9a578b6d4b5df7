// SPDX-License-Identifier: GPL-3.0-or-later
#include "texttools/exporttext.h"

#include "platform/desktop.h"
#include "platform/fileoperations.h"
#include "platform/runtimeerror.h"
#include "platform/styledtext.h"
#include "shell/splitpath.h"
#include "support/lifecyclefixture.h"
#include "support/printers.h"
#include "texttools/htmlwriter.h"
#include "texttools/rtfwriter.h"

#include <QDir>
#include <QFile>
#include <QStringList>
#include <vector>

using namespace zelvane;
using namespace Qt::Literals::StringLiterals;

namespace
{

/// Progress that a test may stop.
struct Progress : WorkProgress {
    QStringList begun;
    int asked = 0;
    int ended = 0;
    int stopAt = -1;
    void Begin(const QString &what) override { begun.append(what); }
    bool GoOn(qint64 /*done*/, qint64 /*total*/) override { return ++asked != stopAt; }
    void End() override { ++ended; }
};

struct Export : test::LifecycleFixture, StyledSource {
    Progress progress;
    ExportParts parts{*this, view, progress};

    StyledText Styled(qsizetype start, qsizetype end) const override
    {
        StyledText all{.text = text.TextRange(start, end), .runs = {}, .formats = {}, .font = {}};
        all.font.family = u"Mono"_s;
        all.formats[size_t(StyleClass::Comment)] = {0x008000, false};
        all.runs = {{0, 2, StyleClass::Comment}};
        return all;
    }
    FileDialogRequest Request(ExportFormat format, const QString &current) const
    {
        if (format == ExportFormat::Html)
            return {.title = u"Export to HTML format"_s,
                    .filters = {{u"HTML"_s, u"*.html;*.htm"_s}},
                    .folder = SplitPath(PathPart::Folder, document.CurrentFile),
                    .fileName = current + u".html"_s,
                    .defaultExtension = u"html"_s};
        return {.title = u"Export to RTF format"_s,
                .filters = {{u"RTF (Rich Text Format)"_s, u"*.rtf"_s}},
                .folder = SplitPath(PathPart::Folder, document.CurrentFile),
                .fileName = current + u".rtf"_s,
                .defaultExtension = u"rtf"_s};
    }
};

struct ExportCase {
    ExportFormat format;
    QString title;
    QByteArray bytes;
};

TEST_F(Export, WritesAnotherFormAndLeavesTheDocument)
{
    const QString path = context.WriteFile(u"x.orc"_s, "caf\xE9\r\nb\r\n");
    documents.OpenFile(path);
    const std::vector<ExportCase> cases = {
        {ExportFormat::Pc, u"Export to PC format"_s, "caf\xE9\r\nb\r\n"},
        {ExportFormat::Unix, u"Export to UNIX format"_s, "caf\xE9\nb\n"},
        {ExportFormat::Mac, u"Export to MAC format"_s, "caf\xE9\rb\r"},
    };
    view.calls.clear();
    for (const ExportCase &one : cases) {
        const FileDialogRequest request{.title = one.title,
                                        .folder = context.folder.path(),
                                        .fileName = path,
                                        .defaultExtension = u"orc"_s};
        desktop.ExpectSaveDialog(request, {});
        ExportText(one.format, editor, parts);
        const QString target = context.folder.filePath(u"export.orc"_s);
        desktop.ExpectSaveDialog(request, {.path = target});
        ExportText(one.format, editor, parts);
        EXPECT_EQ(FileBytes(target), one.bytes);
    }
    EXPECT_EQ(view.calls, QStringList());
    EXPECT_EQ(document.CurrentFile, path);
    EXPECT_FALSE(document.Modified);
    EXPECT_EQ(text.text, u"caf\u00E9\nb\n"_s);
    EXPECT_EQ(view.recentFiles, QStringList{path});
}

TEST_F(Export, WritesColouredTextAndLeavesTheDocument)
{
    const QString path = context.WriteFile(u"x.y.orc"_s, ";\xE9 <\r\n");
    documents.OpenFile(path);
    text.SetSelection(1, 2);
    view.calls.clear();
    const QString bare = context.folder.filePath(u"x.y"_s);
    for (const ExportFormat format : {ExportFormat::Html, ExportFormat::Rtf}) {
        const QString target = context.WriteFile(u"there"_s, "before");
        desktop.ExpectSaveDialog(Request(format, bare), {});
        ExportText(format, editor, parts);
        EXPECT_EQ(FileBytes(target), "before");
        EXPECT_EQ(view.calls, QStringList());

        desktop.ExpectSaveDialog(Request(format, bare), {.path = target});
        ExportText(format, editor, parts);
        const StyledText all = Styled(0, text.Length());
        if (format == ExportFormat::Html) {
            EXPECT_EQ(FileBytes(target), HtmlDocument(all, u"x.y.orc"_s));
            EXPECT_EQ(view.calls,
                      (QStringList{u"status Converting to HTML..."_s, u"busy"_s, u"ready"_s, u"status "_s}));
            EXPECT_TRUE(FileBytes(target).contains("<font color=#008000>;\xE9</font>"));
        } else {
            EXPECT_EQ(FileBytes(target), RtfDocument(all));
            EXPECT_EQ(view.calls, (QStringList{u"busy"_s, u"ready"_s}));
        }
        view.calls.clear();
    }
    EXPECT_EQ(progress.begun, (QStringList{u"Writing there..."_s, u"Writing there..."_s}));
    EXPECT_EQ(progress.ended, 2);
    EXPECT_EQ(text.selection, (TextSpan{1, 2}));
    EXPECT_EQ(document.CurrentFile, path);
    EXPECT_FALSE(document.Modified);
    EXPECT_EQ(view.recentFiles, QStringList{path});
}

TEST_F(Export, ColoursOverTheDocumentItselfAreAskedAbout)
{
    const QString path = context.WriteFile(u"a.orc"_s, "; mine\r\n");
    documents.OpenFile(path);
    const QString link = context.folder.filePath(u"link"_s);
    ASSERT_TRUE(QFile::link(path, link));
    const MessageBoxRequest question{
        .text = u"This is the file of the document itself. Replace its text with the exported one?"_s,
        .icon = BoxIcon::Warning,
        .buttons = BoxButtons::YesNo,
        .defaultAnswer = BoxAnswer::No};
    for (const ExportFormat format : {ExportFormat::Html, ExportFormat::Rtf}) {
        for (const QString &target : {path, link}) {
            desktop.ExpectSaveDialog(Request(format, context.folder.filePath(u"a"_s)), {.path = target});
            desktop.ExpectMessage(question, BoxAnswer::No);
            ExportText(format, editor, parts);
            EXPECT_EQ(FileBytes(path), "; mine\r\n");
        }
    }
    EXPECT_EQ(progress.begun, QStringList());
    desktop.ExpectSaveDialog(Request(ExportFormat::Html, context.folder.filePath(u"a"_s)), {.path = path});
    desktop.ExpectMessage(question, BoxAnswer::Yes);
    ExportText(ExportFormat::Html, editor, parts);
    EXPECT_TRUE(FileBytes(path).startsWith("<!DOCTYPE"));
}

TEST_F(Export, AnUntitledTextIsOfferedAName)
{
    Type(u"x"_s);
    const QString target = context.folder.filePath(u"x.html"_s);
    desktop.ExpectSaveDialog(Request(ExportFormat::Html, u"Untitled"_s), {.path = target});
    ExportText(ExportFormat::Html, editor, parts);
    EXPECT_TRUE(FileBytes(target).contains("<title>Untitled</title>"));
    desktop.ExpectSaveDialog(Request(ExportFormat::Rtf, u"Untitled"_s), {});
    ExportText(ExportFormat::Rtf, editor, parts);
}

TEST_F(Export, WhatTheUserStopsLeavesNothing)
{
    Type(QString(u"long\n"_s).repeated(100'000));
    view.calls.clear();
    for (const ExportFormat format : {ExportFormat::Html, ExportFormat::Rtf}) {
        progress.asked = 0;
        progress.stopAt = 2;
        desktop.ExpectSaveDialog(Request(format, u"Untitled"_s), {.path = context.folder.filePath(u"new"_s)});
        ExportText(format, editor, parts);
        EXPECT_EQ(progress.asked, 2);

        const QString there = context.WriteFile(u"there"_s, "before");
        progress.asked = 0;
        desktop.ExpectSaveDialog(Request(format, u"Untitled"_s), {.path = there});
        ExportText(format, editor, parts);
        EXPECT_EQ(FileBytes(there), "before");
    }
    EXPECT_EQ(progress.ended, 4);
    EXPECT_FALSE(view.busy);
    EXPECT_EQ(status.text, QString());
    EXPECT_EQ(QDir(context.folder.path()).entryList({u"new*"_s, u".*new*"_s}, QDir::Files | QDir::Hidden),
              QStringList());
}

TEST_F(Export, AFailureIsReportedByTheCaller)
{
    Type(u"x"_s);
    desktop.ExpectSaveDialog({.title = u"Export to MAC format"_s},
                             {.path = context.folder.filePath(u"no such folder/x"_s)});
    EXPECT_THROW(ExportText(ExportFormat::Mac, editor, parts), RunTimeError);
    for (const ExportFormat format : {ExportFormat::Html, ExportFormat::Rtf}) {
        desktop.ExpectSaveDialog(Request(format, u"Untitled"_s), {.path = u"/dev/full"_s});
        EXPECT_THROW(ExportText(format, editor, parts), RunTimeError);
        EXPECT_FALSE(view.busy);
        EXPECT_EQ(status.text, QString());
    }
    EXPECT_TRUE(document.Modified);
}

} // namespace
