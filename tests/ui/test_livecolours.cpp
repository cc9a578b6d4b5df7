// SPDX-License-Identifier: GPL-3.0-or-later

// The text is coloured as it is written: at rest it has the colours of a refresh, and nothing else changes.

#include "writing/ui/livecolours.h"

#include "language/languagekeys.h"
#include "language/ui/languageroom.h"
#include "platform/styledtext.h"
#include "platform/stylerun.h"
#include "platform/ui/textcontrol.h"
#include "shell/document.h"
#include "shell/documentlifecycle.h"
#include "shell/ui/appearance.h"
#include "support/editorwindow.h"
#include "support/uitest.h"
#include "window/ui/frmeditor.h"
#include "window/ui/rooms.h"
#include "writing/colourchanges.h"
#include "writing/ui/writingroom.h"
#include "writing/writingkeys.h"

#include <algorithm>
#include <QFile>
#include <QInputMethodEvent>
#include <QSignalSpy>
#include <QString>
#include <random>

using namespace Qt::Literals::StringLiterals;
using namespace zelvane;
using namespace zelvane::test;

namespace
{

struct LiveWindow : EditorWindow {
    LiveWindow() { settings.SaveFlag(Keys::LiveColours, true); }

    LiveColours &Aid() { return *dynamic_cast<LiveColours *>(window->Rooms().writing.Aid(u"LiveColours"_s)); }
    StyleRuns Runs() { return Text().RunsBetween(0, Text().Length()); }
    /// The colours that a refresh would give.
    StyleRuns Wanted()
    {
        return RefreshedColours(Text().Text(), window->Context().document.DocumentKind,
                                window->Rooms().language.Opcodes())
            .value_or(Runs());
    }
    void Type(const QString &text)
    {
        Text().setFocus();
        for (const QChar c : text) {
            if (c == u'\n')
                QTest::keyClick(&Text(), Qt::Key_Return);
            else
                QTest::keyClick(&Text(), c.toLatin1());
        }
    }
    bool AtRest()
    {
        return Eventually([this] { return Runs() == Wanted(); });
    }
};

} // namespace

class LiveColoursTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void ANewUnifiedDocumentIsColouredFromItsFirstLine();
    void PausesColourWhatWasTyped();
    void NothingButColoursChanges();
    void AComposedCharacterGoesOn();
    void AtRestItIsARefresh_data();
    void AtRestItIsARefresh();
    void WithoutSyntaxHighlightNothingHappens();
    void AnotherNameIsAnotherKind();
    void ItEndsWithItsSetting();
};

void LiveColoursTest::ANewUnifiedDocumentIsColouredFromItsFirstLine()
{
    LiveWindow editor;
    editor.Open();
    editor.window->Documents().NewFile(FileKind::Unified, {});
    editor.Text().SetText({});
    editor.Type(u"<CsoundSynthesizer>\n<CsInstruments>\ninstr 1\na1 oscil 1 ; tone\nendin\n"_s);
    QVERIFY(editor.AtRest());
    editor.Type(u"</CsInstruments>\n</CsoundSynthesizer>\n"_s);
    QVERIFY(editor.AtRest());
    const QString text = editor.Text().Text();
    QCOMPARE(editor.Text().StyleAt(0), StyleClass::Tag);
    QCOMPARE(editor.Text().StyleAt(text.indexOf(u"oscil"_s)), StyleClass::Opcode);
    QCOMPARE(editor.Text().StyleAt(text.indexOf(u"tone"_s)), StyleClass::Comment);
    QCOMPARE(editor.Text().StyleAt(text.indexOf(u"endin"_s)), StyleClass::Text);
    // As a refresh has it, the look of plain text and all.
    const auto formats = editor.Text().Styled(0, 0).formats;
    const StyleRuns runs = editor.Runs();
    editor.window->Rooms().language.performSyntaxHighlight();
    QVERIFY(editor.Runs() == runs);
    QVERIFY(editor.Text().Styled(0, 0).formats == formats);
}

void LiveColoursTest::PausesColourWhatWasTyped()
{
    LiveWindow editor;
    editor.Open({editor.WriteFile(u"a.orc"_s, "a1 linen 1\n a2\n")});
    const qsizetype end = editor.Text().Text().indexOf(u"a2"_s);
    editor.Text().SetSelection(end, end);
    editor.Type(u"outs "_s);
    QCOMPARE(editor.Text().StyleAt(end), StyleClass::Text); // not while the keys come
    QVERIFY(Eventually([&] { return editor.Text().StyleAt(end) == StyleClass::Opcode; }));
    editor.Text().Undo();
    QVERIFY(editor.AtRest());
    editor.Text().Redo();
    QVERIFY(editor.AtRest());
    editor.desktop.clipboard = u"/* \u00E9\noutc \U0001F3B5 */ linen 3\n"_s;
    editor.Text().Paste();
    QVERIFY(editor.AtRest());
    editor.Text().SelectedText();
    editor.Text().SetSelection(0, 0);
    editor.Type(u"\""_s);
    QVERIFY(editor.AtRest());
    QCOMPARE(editor.Text().StyleAt(4), StyleClass::Literal);
}

void LiveColoursTest::NothingButColoursChanges()
{
    LiveWindow editor;
    const QByteArray text = QByteArray("a1 linen 1, 2 ; note\n").repeated(400);
    editor.Open({editor.WriteFile(u"a.orc"_s, text)});
    QVERIFY(!editor.window->Context().document.Modified);
    editor.Text().ReplaceRange(0, 0, u"/*"_s);
    editor.Text().ReplaceRange(editor.Text().Length(), editor.Text().Length(), u"*/"_s);
    editor.Text().Undo();
    editor.window->Context().document.Modified = false;
    editor.Text().ScrollToLine(200);
    editor.Text().SetSelection(4300, 4310);
    const qsizetype top = editor.Text().FirstVisibleLine();
    const UndoKind undo = editor.Text().NextUndo();
    QSignalSpy changed(&editor.Text(), &TextControl::textChanged);
    QSignalSpy edited(&editor.Text(), &TextControl::edited);
    QSignalSpy selected(&editor.Text(), &TextControl::selectionChanged);
    editor.Aid().ColourNow();
    QVERIFY(editor.Runs() == editor.Wanted());
    QCOMPARE(changed.count() + edited.count() + selected.count(), 0);
    QVERIFY(editor.Text().CanUndo() && editor.Text().CanRedo());
    QCOMPARE(editor.Text().NextUndo(), undo);
    QCOMPARE(editor.Text().FirstVisibleLine(), top);
    QCOMPARE(editor.Text().Selection(), (TextSpan{4300, 4310}));
    QVERIFY(!editor.window->Context().document.Modified);
    editor.Text().Redo();
    editor.Aid().ColourNow();
    QVERIFY(editor.Runs() == editor.Wanted());
    editor.Text().Undo();
    editor.Text().Undo();
    editor.Aid().ColourNow();
    QVERIFY(editor.Runs() == editor.Wanted());
    QVERIFY(!editor.Text().CanUndo());
    QCOMPARE(editor.Text().Utf8(), text);
}

void LiveColoursTest::AComposedCharacterGoesOn()
{
    LiveWindow editor;
    editor.Open({editor.WriteFile(u"a.orc"_s, "a1 linen 1 ; x\n")});
    TextControl &text = editor.Text();
    text.setFocus();
    text.SetSelection(0, 0);
    QInputMethodEvent composed(u"\"\u3042"_s, {});
    QCoreApplication::sendEvent(&text, &composed);
    const QString during = text.Text();
    editor.Aid().ColourNow();
    QCOMPARE(text.Text(), during);
    QInputMethodEvent done;
    done.setCommitString(u"\"\u3042\""_s);
    QCoreApplication::sendEvent(&text, &done);
    QCOMPARE(text.Text(), u"\"\u3042\"a1 linen 1 ; x\n"_s);
    editor.Aid().ColourNow();
    QVERIFY(editor.Runs() == editor.Wanted());
    QCOMPARE(text.StyleAt(1), StyleClass::Literal);
    text.Undo();
    QCOMPARE(text.Text(), u"a1 linen 1 ; x\n"_s);
    QVERIFY(!text.CanUndo());
    editor.Aid().ColourNow();
    QVERIFY(editor.Runs() == editor.Wanted());
}

void LiveColoursTest::AtRestItIsARefresh_data()
{
    QTest::addColumn<QString>("name");
    for (const char *name : {"bells.csd", "waltz.orc", "waltz.sco"})
        QTest::newRow(name) << QString::fromLatin1(name);
}

void LiveColoursTest::AtRestItIsARefresh()
{
    QFETCH(QString, name);
    LiveWindow editor;
    const QString file = editor.folder.filePath(name);
    QVERIFY(QFile::copy(QStringLiteral(ZELVANE_SOURCE_DIR "/examples/") + name, file));
    editor.Open({file});
    TextControl &text = editor.Text();
    const qsizetype most = text.Length() + 500;
    const QString pieces[] = {
        u";"_s,       u"\n"_s,    u"\""_s,         u"/*"_s,         u"*/"_s,
        u" oscil "_s, u"outs "_s, u"<"_s,          u"</"_s,         u"$a "_s,
        u"\u00E9"_s,  u"#"_s,     u"\U0001F3B5"_s, u"</CsScore>"_s, u"#define x #1#\n"_s};
    std::mt19937 random(97);
    const auto upTo = [&](qsizetype last) { return qsizetype(random() % unsigned(last + 1)); };
    for (int edit = 0; edit < 2500; ++edit) {
        const qsizetype length = text.Length();
        const qsizetype start = upTo(length);
        const qsizetype end = std::min(length, start + upTo(length > most ? 300 : 5));
        const QString &piece = pieces[upTo(std::size(pieces) - 1)];
        switch (upTo(7)) {
        case 0:
            text.Undo();
            break;
        case 1:
            text.Redo();
            break;
        case 2:
            text.SetSelection(start, end);
            QTest::keyClick(&text, Qt::Key_Delete);
            break;
        case 3:
            text.SetSelection(start, start);
            QTest::keyClick(&text, Qt::Key_Backspace, upTo(1) ? Qt::ControlModifier : Qt::NoModifier);
            break;
        case 4:
            text.SetSelection(start, start);
            QTest::keyClick(&text, 'o');
            break;
        default:
            text.ReplaceRange(start, end, piece);
            break;
        }
        if (upTo(2) == 0)
            continue;
        editor.Aid().ColourNow();
        if (editor.Runs() != editor.Wanted())
            QFAIL(qPrintable(u"edit %1"_s.arg(edit)));
    }
    // A name that runs to the end of the text is a failure for a refresh.
    text.ReplaceRange(text.Length(), text.Length(), u"\n"_s);
    editor.Aid().ColourNow();
    const StyleRuns runs = editor.Runs();
    editor.window->Rooms().language.performSyntaxHighlight();
    QVERIFY(editor.Runs() == runs);
}

void LiveColoursTest::WithoutSyntaxHighlightNothingHappens()
{
    LiveWindow editor;
    editor.settings.SaveFlag(Keys::SyntaxHighlight, false);
    editor.Open({editor.WriteFile(u"a.orc"_s, "a1 linen 1 ; x\n")});
    editor.Text().ReplaceRange(0, 0, u" outs "_s);
    editor.Aid().ColourNow();
    QVERIFY(editor.Runs().empty());
    // It is looked at when the settings have been applied.
    editor.settings.SaveFlag(Keys::SyntaxHighlight, true);
    editor.window->Looks().ApplyAll();
    QVERIFY(Eventually([&] { return !editor.Runs().empty(); }));
    QVERIFY(editor.Runs() == editor.Wanted());
}

void LiveColoursTest::AnotherNameIsAnotherKind()
{
    LiveWindow editor;
    editor.Open();
    editor.Text().ReplaceRange(0, 0, u"a1 linen 1 ; x\n"_s);
    editor.Aid().ColourNow();
    QVERIFY(editor.Runs().empty());
    QVERIFY(editor.window->Documents().SaveFile(editor.folder.filePath(u"a.orc"_s)));
    QVERIFY(Eventually([&] { return !editor.Runs().empty(); }));
    QVERIFY(editor.Runs() == editor.Wanted());
}

void LiveColoursTest::ItEndsWithItsSetting()
{
    LiveWindow editor;
    editor.Open({editor.WriteFile(u"a.orc"_s, "a1\n")});
    editor.settings.SaveFlag(Keys::LiveColours, false);
    editor.Text().ReplaceRange(0, 0, u" outs "_s);
    editor.window->Looks().ApplyAll();
    QVERIFY(!editor.window->Rooms().writing.Aid(u"LiveColours"_s));
    QTest::qWait(100);
    QVERIFY(editor.Runs().empty());
    // Turned on, it colours what stands there.
    editor.settings.SaveFlag(Keys::LiveColours, true);
    editor.window->Looks().ApplyAll();
    QVERIFY(Eventually([&] { return !editor.Runs().empty(); }));
}

int main(int argc, char **argv)
{
    return RunUiTest<LiveColoursTest>(argc, argv);
}

#include "test_livecolours.moc"
