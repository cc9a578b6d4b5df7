// SPDX-License-Identifier: GPL-3.0-or-later
#include "texttools/exporttext.h"

#include "platform/runtimeerror.h"
#include "support/lifecyclefixture.h"

#include <vector>

using namespace zelvane;
using namespace Qt::Literals::StringLiterals;

namespace
{

using Export = test::LifecycleFixture;

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
        ExportText(one.format, editor);
        const QString target = context.folder.filePath(u"export.orc"_s);
        desktop.ExpectSaveDialog(request, {.path = target});
        ExportText(one.format, editor);
        EXPECT_EQ(FileBytes(target), one.bytes);
    }
    ExportText(ExportFormat::Rtf, editor);
    ExportText(ExportFormat::Html, editor);
    EXPECT_EQ(view.calls, QStringList());
    EXPECT_EQ(document.CurrentFile, path);
    EXPECT_FALSE(document.Modified);
    EXPECT_EQ(text.text, u"caf\u00E9\nb\n"_s);
    EXPECT_EQ(view.recentFiles, QStringList{path});
}

TEST_F(Export, AFailureIsReportedByTheCaller)
{
    Type(u"x"_s);
    desktop.ExpectSaveDialog({.title = u"Export to MAC format"_s},
                             {.path = context.folder.filePath(u"no such folder/x"_s)});
    EXPECT_THROW(ExportText(ExportFormat::Mac, editor), RunTimeError);
    EXPECT_TRUE(document.Modified);
}

} // namespace
