// SPDX-License-Identifier: GPL-3.0-or-later
// What all dialogs have to keep: nothing is cut off, every control is reached by the keyboard and has a name.

#include "platform/xdgfiletypes.h"
#include "preferences/ui/formabout.h"
#include "preferences/ui/frmoptions.h"
#include "run/toolpaths.h"
#include "run/ui/frmflags.h"
#include "run/ui/frmimages.h"
#include "run/ui/frmmanual.h"
#include "run/ui/frmpresets.h"
#include "run/ui/frmquickpreset.h"
#include "shell/documentsteps.h"
#include "shell/ui/frmfind.h"
#include "shell/ui/frmnew.h"
#include "support/editorwindow.h"
#include "support/testcontext.h"
#include "support/uitest.h"
#include "texttools/ui/frmheader.h"
#include "texttools/ui/frmnewinclude.h"
#include "texttools/ui/frmnewinstr.h"
#include "texttools/ui/frmnewmacro.h"
#include "texttools/ui/frmrndnum.h"
#include "texttools/ui/frmtabspace.h"

#include <cstdlib>
#include <functional>
#include <memory>
#include <QAbstractButton>
#include <QAccessible>
#include <QApplication>
#include <QColor>
#include <QComboBox>
#include <QDialog>
#include <QFont>
#include <QFontMetrics>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QList>
#include <QPalette>
#include <QScopeGuard>
#include <QSize>
#include <QTabBar>
#include <QTabWidget>
#include <QTextDocument>
#include <QToolButton>
#include <QWidget>
#include <vector>

using namespace Qt::Literals::StringLiterals;
using namespace zelvane;
using namespace zelvane::test;

namespace
{

/// What a dialog needs, and a presets' store that shows all its controls.
struct Place {
    Place()
    {
        for (const QString &name : {u"First"_s, u"Second"_s, u"Third"_s})
            context.settings.SaveSetting(u"Presets"_s, name, QString());
        context.settings.SaveSetting(u"Second"_s, u"Command"_s, u"/bin/sh"_s);
        editor.Open();
        editor.Text().LoadText(u"some text"_s);
    }

    template <typename Dialog> std::unique_ptr<QDialog> Insert()
    {
        return std::make_unique<Dialog>(context.editor, steps, nullptr);
    }

    RunContext Run() { return {context.editor, tools, context.windows}; }

    TestContext context;
    DocumentSteps steps;
    ToolPaths tools{.Csound = u"/opt/one/csound"_s, .Csound2 = u"/opt/two/csound"_s};
    EditorWindow editor;
    XdgFileTypes fileTypes{{context.folder.path(), context.folder.path()}};
};

using Maker = std::function<std::unique_ptr<QDialog>(Place &)>;

struct DialogRow {
    const char *name;
    Maker make;
    QString tabs; ///< the controls that Tab goes round, from the one that has the keyboard; empty: not told
};

std::unique_ptr<QDialog> NewFind(Place &place, bool replace)
{
    return std::make_unique<frmFind>(place.editor.window->Context(), place.editor.Text(),
                                     place.editor.window->CommandTable(), replace, nullptr);
}

std::unique_ptr<QDialog> NewPreferences(Place &place, int page)
{
    EditorContext &editor = place.editor.window->Context();
    auto dialog = std::make_unique<frmOptions>(OptionsContext{
        editor.settings, editor.desktop, place.editor.window->Looks(), place.editor.Text(), place.fileTypes});
    dialog->findChild<QTabWidget *>(u"tbsOptions"_s)->setCurrentIndex(page);
    return dialog;
}

const std::vector<DialogRow> &Dialogs()
{
    static const std::vector<DialogRow> rows = {
        {"Find", [](Place &place) { return NewFind(place, false); },
         u"txtFind chkWholeWords chkCase chkWrap bFind bReplace bClose"_s},
        {"Replace", [](Place &place) { return NewFind(place, true); },
         u"txtFind txtReplace chkWholeWords chkCase chkWrap optScope_1 bFind bReplace bReplaceAll bClose"_s},
        {"New Document", [](Place &) { return std::make_unique<frmNew>(); }, u"lvwNew cmdOK cmdCancel"_s},
        {"Formatting Algorythms",
         [](Place &place) {
             return std::make_unique<frmTabSpace>(place.editor.window->Context(), place.editor.Text(),
                                                  nullptr);
         },
         u"lstMode bOK bCancel"_s},
        {"Run Csound", [](Place &place) { return std::make_unique<frmManual>(place.Run()); },
         u"txtORC bORC txtSCO bSCO cmbArgs bFlags chkCsound2 chkSaveFirst chkFolderDoc bOK bCancel"_s},
        {"Csound Flags",
         [](Place &place) { return std::make_unique<frmFlags>(place.context.editor, nullptr, nullptr); },
         u"lvwFlags txtFlags cmdOK cmdCancel"_s},
        {"Presets",
         [](Place &place) {
             auto dialog = std::make_unique<frmPresets>(place.Run(), nullptr);
             dialog->SelectPreset(u"Second"_s);
             return dialog;
         },
         u"cmbPreset qt_tabwidget_tabbar txtCommand bCommand txtArgs bPickFlag txtFolder bFolder cmbWindow "
         "chkSaveFirst bCancel"_s},
        {"Orchestra Header", [](Place &place) { return place.Insert<frmHeader>(); }, {}},
        {"Random Number", [](Place &place) { return place.Insert<frmRndNum>(); },
         u"txtMin txtMax txtDigits bOK bCancel"_s},
        {"Instrument", [](Place &place) { return place.Insert<frmNewInstr>(); },
         u"txtNumber txtName chkEndofFile bOK bCancel"_s},
        {"Macro Definition", [](Place &place) { return place.Insert<frmNewMacro>(); },
         u"txtName txtArgs txtReplacement bOK bCancel"_s},
        {"Include", [](Place &place) { return place.Insert<frmNewInclude>(); }, {}},
        {"Pick an image", [](Place &) { return std::make_unique<frmImages>(); }, {}},
        {"Preferences, editor", [](Place &place) { return NewPreferences(place, 0); },
         u"qt_tabwidget_tabbar SystemColors bFont FixedPitchFonts RealTabs TabSpaces TabSize DragAndDrop "
         "SyntaxHighlight CppComments LineWidth LineStyle1 LineStyle2 cmdOK cmdCancel cmdApply"_s},
        {"Preferences, colors", [](Place &place) { return NewPreferences(place, 1); },
         u"qt_tabwidget_tabbar lstSyntaxElements bColor cmdOK cmdCancel cmdApply"_s},
        {"Preferences, general", [](Place &place) { return NewPreferences(place, 2); },
         u"qt_tabwidget_tabbar SingleSelection ExpandBrowse HotTracking Splash BandLabels FlatButtons "
         "DeleteTempFiles RememberCaret SaveOnSwitch ConfirmPresets OverwritePrompt MinimizeOnPresets "
         "MultipleInstances SliderNegative SafetyCopy Startup BakPath bBakPath cmdOK cmdCancel cmdApply"_s},
        {"Preferences, programs", [](Place &place) { return NewPreferences(place, 3); },
         u"qt_tabwidget_tabbar Csound bCsound Csound2 bCsound2 Help bHelp Editor bEditor Player bPlayer "
         u"cmdOK "
         "cmdCancel cmdApply"_s},
        {"Preferences, extensions", [](Place &place) { return NewPreferences(place, 4); },
         u"qt_tabwidget_tabbar OrchestraExtensions ScoreExtensions UFFExtensions SoundExtensions "
         "MIDIExtensions bAssociate cmdOK cmdCancel cmdApply"_s},
        {"Preferences, writing", [](Place &place) { return NewPreferences(place, 5); },
         u"qt_tabwidget_tabbar LiveColours Completion ArgumentHint AutoIndent MoveLines "
         "LineNumbers CurrentLine BracketMatch SameWord Folding Bookmarks FindInFiles RegularExpressions "
         "bAllAids cmdOK cmdCancel cmdApply"_s},
        {"Preset chooser", [](Place &place) { return std::make_unique<frmQuickPreset>(place.Run()); },
         u"lstPreset cmdOK cmdCancel cmdEdit"_s},
        {"About", [](Place &place) { return std::make_unique<Formabout>(place.context.editor); },
         u"bOK lblWeb lblMail bMM bOLE"_s},
    };
    return rows;
}

void Show(QDialog &dialog)
{
    dialog.setAttribute(Qt::WA_DeleteOnClose, false);
    dialog.show();
    if (!Eventually([&] { return QApplication::activeWindow() == &dialog; }))
        QTest::qFail("the dialog is not the active window", __FILE__, __LINE__);
}

/// The words that stand on a control in one line; empty where it has none or breaks them.
QString LineOn(const QWidget *control)
{
    if (const auto *label = qobject_cast<const QLabel *>(control))
        return label->wordWrap() || Qt::mightBeRichText(label->text()) ? QString() : label->text();
    const auto *button = qobject_cast<const QAbstractButton *>(control);
    return button && !qobject_cast<const QToolButton *>(control) ? button->text() : QString();
}

/// Words stand out from their ground.
void CheckReadable(const QWidget *control)
{
    const QPalette &colours = control->palette();
    const int words = colours.color(control->foregroundRole()).lightness();
    const int ground = colours.color(control->backgroundRole()).lightness();
    QVERIFY2(std::abs(words - ground) > 100,
             qPrintable(u"%1: %2 on %3"_s.arg(control->objectName()).arg(words).arg(ground)));
}

QPalette DarkPalette()
{
    QPalette dark(QColor(0x2b, 0x2b, 0x2b));
    dark.setColor(QPalette::Base, QColor(0x1e, 0x1e, 0x1e));
    dark.setColor(QPalette::Text, Qt::white);
    return dark;
}

/// Each control has the room that it needs, and stands inside what it belongs to.
void CheckWhole(const QDialog &dialog)
{
    for (const QWidget *control : dialog.findChildren<QWidget *>()) {
        const auto *button = qobject_cast<const QAbstractButton *>(control);
        const bool hasWords =
            qobject_cast<const QLabel *>(control) || (button && !button->text().isEmpty()) ||
            qobject_cast<const QGroupBox *>(control) || qobject_cast<const QLineEdit *>(control);
        // The field of a list that drops down is the style's.
        if (!hasWords || !control->isVisible() || control->window() != &dialog ||
            qobject_cast<const QComboBox *>(control->parentWidget()))
            continue;
        QSize needed = control->minimumSizeHint();
        if (const auto *label = qobject_cast<const QLabel *>(control); label && label->wordWrap())
            needed = QSize(0, label->heightForWidth(label->width()));
        const QString what = control->objectName() + u": %1x%2 of %3x%4"_s.arg(control->width())
                                                         .arg(control->height())
                                                         .arg(needed.width())
                                                         .arg(needed.height());
        QVERIFY2(control->width() >= needed.width() && control->height() >= needed.height(),
                 qPrintable(what));
        QVERIFY2(control->parentWidget()->rect().contains(control->geometry()), qPrintable(what));
        if (const QString line = LineOn(control); !line.isEmpty()) {
            const QSize words = control->fontMetrics().size(Qt::TextShowMnemonic, line);
            QVERIFY2(control->width() >= words.width() && control->height() >= words.height(),
                     qPrintable(what + u", words %1x%2"_s.arg(words.width()).arg(words.height())));
            if (control->isEnabled())
                CheckReadable(control);
        }
    }
}

} // namespace

class DialogsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void TabGoesRound_data();
    void TabGoesRound();
    void NothingIsCutOff_data();
    void NothingIsCutOff();
    void EveryControlHasAName_data();
    void EveryControlHasAName();
    void EscapeCloses_data();
    void EscapeCloses();
};

void DialogsTest::TabGoesRound_data()
{
    QTest::addColumn<int>("row");
    for (size_t row = 0; row < Dialogs().size(); ++row)
        QTest::newRow(Dialogs()[row].name) << int(row);
}

void DialogsTest::TabGoesRound()
{
    QFETCH(int, row);
    Place place;
    const auto dialog = Dialogs()[size_t(row)].make(place);
    Show(*dialog);
    QList<QWidget *> seen;
    QStringList names;
    for (QWidget *at = QApplication::focusWidget(); at && !seen.contains(at);
         at = QApplication::focusWidget()) {
        seen.append(at);
        names.append(at->objectName());
        QTest::keyClick(at, Qt::Key_Tab);
    }
    if (!Dialogs()[size_t(row)].tabs.isEmpty())
        QCOMPARE(names.join(u' '), Dialogs()[size_t(row)].tabs);
    QCOMPARE(QApplication::focusWidget(), seen.value(0));
    // The way back is the same.
    for (qsizetype i = seen.size() - 1; i >= 0; --i) {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Backtab, Qt::ShiftModifier);
        QCOMPARE(QApplication::focusWidget(), seen[i]);
    }
    for (QWidget *control : dialog->findChildren<QWidget *>()) {
        if (control->isVisible() && control->isEnabled() && !control->focusProxy() &&
            (control->focusPolicy() & Qt::TabFocus) && control->window() == dialog.get())
            QVERIFY2(seen.contains(control), qPrintable(control->objectName()));
    }
}

void DialogsTest::NothingIsCutOff_data()
{
    QTest::addColumn<int>("row");
    QTest::addColumn<int>("percent");
    QTest::addColumn<bool>("dark");
    for (size_t row = 0; row < Dialogs().size(); ++row) {
        const char *name = Dialogs()[row].name;
        for (const int percent : {100, 160, 200})
            QTest::addRow("%s, font %d%%", name, percent) << int(row) << percent << false;
        QTest::addRow("%s, dark", name) << int(row) << 200 << true;
    }
}

void DialogsTest::NothingIsCutOff()
{
    QFETCH(int, row);
    QFETCH(int, percent);
    QFETCH(bool, dark);
    const QFont before = QApplication::font();
    const QPalette colours = QApplication::palette();
    const auto back = qScopeGuard([&] {
        QApplication::setFont(before);
        QApplication::setPalette(colours);
    });
    if (dark)
        QApplication::setPalette(DarkPalette());
    QFont font = before;
    font.setPointSizeF(before.pointSizeF() * percent / 100);
    QApplication::setFont(font);
    Place place;
    const auto dialog = Dialogs()[size_t(row)].make(place);
    Show(*dialog);
    dialog->resize(dialog->minimumSizeHint()); // as small as it gets
    QCoreApplication::processEvents();
    for (QTabWidget *pages : dialog->findChildren<QTabWidget *>()) {
        for (int page = 0; page < pages->count(); ++page) {
            pages->setCurrentIndex(page);
            CheckWhole(*dialog);
        }
    }
    CheckWhole(*dialog);
}

void DialogsTest::EveryControlHasAName_data()
{
    TabGoesRound_data();
}

void DialogsTest::EveryControlHasAName()
{
    QFETCH(int, row);
    Place place;
    const auto dialog = Dialogs()[size_t(row)].make(place);
    Show(*dialog);
    QVERIFY(!dialog->windowTitle().isEmpty());
    for (QWidget *control : dialog->findChildren<QWidget *>()) {
        if (!(control->focusPolicy() & Qt::TabFocus) || control->focusProxy() ||
            control->window() != dialog.get() || qobject_cast<QTabBar *>(control))
            continue;
        QAccessibleInterface *reader = QAccessible::queryAccessibleInterface(control);
        QVERIFY2(reader && !reader->text(QAccessible::Name).isEmpty(), qPrintable(control->objectName()));
    }
}

void DialogsTest::EscapeCloses_data()
{
    TabGoesRound_data();
}

void DialogsTest::EscapeCloses()
{
    QFETCH(int, row);
    Place place;
    const auto dialog = Dialogs()[size_t(row)].make(place);
    Show(*dialog);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Escape);
    QVERIFY(!dialog->isVisible());
    QCOMPARE(dialog->result(), int(QDialog::Rejected));
}

int main(int argc, char **argv)
{
    return RunUiTest<DialogsTest>(argc, argv);
}

#include "test_dialogs.moc"
