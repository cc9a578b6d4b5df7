// SPDX-License-Identifier: GPL-3.0-or-later
#include "texttools/printtext.h"

#include "platform/printing.h"
#include "platform/runtimeerror.h"
#include "platform/styledtext.h"
#include "support/printers.h"
#include "support/testcontext.h"

#include <gtest/gtest.h>
#include <optional>
#include <QString>
#include <QStringList>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{
namespace
{

/// A print dialog and a printer that write down what they are given.
struct RecordedPrinting : Printing {
    QStringList dialogs; ///< "TITLE", and " selected" behind it
    QStringList printed;
    PrintedPart answer = PrintedPart::All;
    std::optional<ErrorNumber> dialogFails;
    bool printerFails = false;

    PrintedPart ShowPrinter(const QString &title, bool selected) override
    {
        dialogs.append(selected ? title + u" selected"_s : title);
        if (dialogFails)
            throw RunTimeError(*dialogFails, u"no"_s);
        return answer;
    }
    void Print(const StyledText &text) override
    {
        if (printerFails)
            throw RunTimeError(ErrorNumber::DeviceError, u"no paper"_s);
        printed.append(text.text);
    }
};

struct PrintTextTest : testing::Test, StyledSource {
    test::TestContext context;
    RecordedPrinting printing;

    PrintTextTest() { context.text.SetText(u"one\ntwo\n"_s); }
    StyledText Styled(qsizetype start, qsizetype end) const override
    {
        return {.text = context.text.TextRange(start, end), .runs = {}, .formats = {}, .font = {}};
    }
    void Run() { PrintText(context.editor, *this, printing); }
};

TEST_F(PrintTextTest, PrintsTheWholeTextWithoutASelection)
{
    context.text.SetSelection(2, 2);
    Run();
    EXPECT_EQ(printing.dialogs, QStringList{u"Untitled"_s});
    EXPECT_EQ(printing.printed, QStringList{u"one\ntwo\n"_s});
    EXPECT_EQ(context.text.selection, (TextSpan{2, 2}));
}

TEST_F(PrintTextTest, PrintsTheSelectionUnlessTheUserWantsAll)
{
    context.document.CurrentFile = u"/some/where/x.orc"_s;
    context.text.SetSelection(1, 5);
    printing.answer = PrintedPart::Selection;
    Run();
    printing.answer = PrintedPart::All;
    Run();
    EXPECT_EQ(printing.dialogs, (QStringList{u"x.orc selected"_s, u"x.orc selected"_s}));
    EXPECT_EQ(printing.printed, (QStringList{u"ne\nt"_s, u"one\ntwo\n"_s}));
    EXPECT_EQ(context.text.selection, (TextSpan{1, 5}));
}

TEST_F(PrintTextTest, CancelIsSilent)
{
    printing.dialogFails = ErrorNumber::DialogCancelled;
    Run();
    EXPECT_EQ(printing.dialogs.size(), 1);
    EXPECT_EQ(printing.printed, QStringList());
    EXPECT_EQ(int(ErrorNumber::DialogCancelled), 32755);
}

TEST_F(PrintTextTest, AnyOtherFailureIsReportedByTheCaller)
{
    printing.dialogFails = ErrorNumber::DeviceError;
    EXPECT_THROW(Run(), RunTimeError);
    printing.dialogFails = {};
    printing.printerFails = true;
    EXPECT_THROW(Run(), RunTimeError);
}

} // namespace
} // namespace zelvane
