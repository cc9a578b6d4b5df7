// SPDX-License-Identifier: GPL-3.0-or-later

// The rows of the Export menu over the real text control.

#include "platform/desktop.h"
#include "platform/styledtext.h"
#include "shell/editorcontext.h"
#include "support/boxes.h"
#include "support/editorwindow.h"
#include "support/uitest.h"
#include "texttools/htmlwriter.h"
#include "texttools/rtfwriter.h"

#include <QAction>
#include <QApplication>
#include <QByteArray>
#include <QFile>
#include <QPalette>
#include <QString>

using namespace Qt::Literals::StringLiterals;
using namespace zelvane;
using namespace zelvane::test;

namespace
{

/// An editor with a coloured orchestra.
struct Exporting : EditorWindow {
    QString target;

    Exporting()
    {
        WriteFile(u"a.orc"_s, "; <caf\xE9>\r\n a1 oscil $x, 1\r\n");
        Open({folder.filePath(u"a.orc"_s)});
        target = folder.filePath(u"out"_s);
    }

    /// Chooses a row and the target.
    void Export(const QString &row, const QString &title, const FileFilter &filter, const QString &extension)
    {
        desktop.ExpectSaveDialog({.title = title,
                                  .filters = {filter},
                                  .folder = folder.path(),
                                  .fileName = folder.filePath(u"a."_s + extension),
                                  .defaultExtension = extension},
                                 {.path = target});
        Row(row).trigger();
        desktop.CheckAllCame();
    }
    void ExportHtml()
    {
        Export(u"mnuPlatformItem_5"_s, u"Export to HTML format"_s, {u"HTML"_s, u"*.html;*.htm"_s}, u"html"_s);
    }
    void ExportRtf()
    {
        Export(u"mnuPlatformItem_4"_s, u"Export to RTF format"_s, {u"RTF (Rich Text Format)"_s, u"*.rtf"_s},
               u"rtf"_s);
    }
    QByteArray Exported() const
    {
        QFile file(target);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    StyledText All() { return Text().Styled(0, Text().Length()); }
    /// Nothing of the export is left in the window.
    void CheckReleased()
    {
        QVERIFY(!QApplication::overrideCursor());
        QCOMPARE(window->Context().status.Text(), QString());
        QVERIFY(Text().updatesEnabled());
        QVERIFY(!window->Context().document.Modified);
    }
};

} // namespace

class ExportTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void WritesTheColoursOfTheWindow();
    void ADarkDesktopExportsBlackText();
    void AFailureIsReported();
};

void ExportTest::WritesTheColoursOfTheWindow()
{
    Exporting on;
    on.Text().SetSelection(3, 9);
    on.ExportHtml();
    QCOMPARE(on.Exported(), HtmlDocument(on.All(), u"a.orc"_s).value());
    QVERIFY(
        on.Exported().contains("<font color=#008000>; &lt;caf\xE9&gt;<br>\r\n</font><font color=#000000> a1 "
                               "<b></font><font color=#0000FF>oscil</b></font><font color=#000000> </font>"
                               "<font color=#800080>$x</font><font color=#000000>, 1<br>\r\n"));
    QCOMPARE(on.Text().Selection(), (TextSpan{3, 9}));
    on.CheckReleased();
    on.ExportRtf();
    QCOMPARE(on.Exported(), RtfDocument(on.All()).value());
    QVERIFY(on.Exported().contains("\\cf2 ; <caf\\u233\\'e9>\\par\r\n"));
    QVERIFY(!on.window->Context().document.Modified);
}

void ExportTest::ADarkDesktopExportsBlackText()
{
    const QPalette light = QApplication::palette();
    QPalette dark = light;
    dark.setColor(QPalette::Base, Qt::black);
    dark.setColor(QPalette::Text, Qt::white);
    QApplication::setPalette(dark);
    {
        Exporting on;
        on.ExportHtml();
        const QByteArray page = on.Exported();
        QVERIFY(page.contains("<font color=#008000>; "));
        QVERIFY(page.contains("<font color=#000000> a1 "));
        QVERIFY(page.contains("<font color=#0000FF>oscil"));
        QVERIFY(!page.contains("#FFFFFF"));
    }
    QApplication::setPalette(light);
}

void ExportTest::AFailureIsReported()
{
    Exporting on;
    on.target = u"/dev/full"_s;
    for (int row = 4; row <= 5; ++row) {
        const bool html = row == 5;
        on.desktop.ExpectSaveDialog({.title = html ? u"Export to HTML format"_s : u"Export to RTF format"_s,
                                     .filters = {html ? FileFilter{u"HTML"_s, u"*.html;*.htm"_s}
                                                      : FileFilter{u"RTF (Rich Text Format)"_s, u"*.rtf"_s}},
                                     .folder = on.folder.path(),
                                     .fileName = on.folder.filePath(html ? u"a.html"_s : u"a.rtf"_s),
                                     .defaultExtension = html ? u"html"_s : u"rtf"_s},
                                    {.path = on.target});
        on.desktop.ExpectMessage(ErrorBox(u"No space left on device (61)"_s, u"/dev/full"_s),
                                 BoxAnswer::Cancel);
        on.Row(u"mnuPlatformItem_%1"_s.arg(row)).trigger();
        on.desktop.CheckAllCame();
        QVERIFY(!QApplication::overrideCursor());
        if (html)
            QCOMPARE(on.window->Context().status.Text(), QString());
    }
}

int main(int argc, char **argv)
{
    return RunUiTest<ExportTest>(argc, argv);
}

#include "test_export.moc"
