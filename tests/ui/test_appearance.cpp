// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/ui/appearance.h"

#include "platform/ui/textcontrol.h"
#include "shell/command.h"
#include "shell/editorkeys.h"
#include "shell/layoutkeys.h"
#include "shell/settings.h"
#include "shell/ui/bandbar.h"
#include "shell/ui/commands.h"
#include "support/editorwindow.h"
#include "support/testcontext.h"
#include "support/uitest.h"

#include <QAction>
#include <QFile>
#include <QProxyStyle>
#include <QSize>
#include <QToolBar>
#include <QToolButton>
#include <QTreeView>
#include <sys/inotify.h>
#include <unistd.h>

using namespace Qt::Literals::StringLiterals;
using namespace zelvane;
using namespace zelvane::test;

namespace
{

/// Counts the files that are moved into a folder: a store is replaced by each write.
class RenameCount
{
public:
    explicit RenameCount(const QString &folder)
    {
        inotify_add_watch(m_events, QFile::encodeName(folder).constData(), IN_MOVED_TO);
    }
    ~RenameCount() { close(m_events); }
    Q_DISABLE_COPY_MOVE(RenameCount)

    /// Since the last call.
    int Count() const
    {
        alignas(inotify_event) char events[4096];
        int count = 0;
        const ssize_t size = read(m_events, events, sizeof events);
        for (ssize_t at = 0; at < size; ++count)
            at += ssize_t(sizeof(inotify_event)) +
                  ssize_t(reinterpret_cast<const inotify_event *>(events + at)->len);
        return count;
    }

private:
    int m_events = inotify_init1(IN_NONBLOCK);
};

/// A style whose raised buttons are higher.
class HighButtons : public QProxyStyle
{
public:
    static constexpr int More = 60; ///< pixels

    QSize sizeFromContents(ContentsType type, const QStyleOption *option, const QSize &contents,
                           const QWidget *widget) const override
    {
        const QSize size = QProxyStyle::sizeFromContents(type, option, contents, widget);
        const bool raised = type == CT_ToolButton && !(option->state & State_AutoRaise);
        return raised ? size + QSize(0, More) : size;
    }
};

} // namespace

class AppearanceTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void LooksAreAppliedInTheOrderOfTheStart();
    void AnUnreadableSettingKeepsNothingElseBack();
    void TheFontOfTheTextIsStoredAndComesBack();
    void TheRunningWindowFollowsChangedSettings();
    void TheToolAreaMakesRoomForRaisedButtons();
};

void AppearanceTest::LooksAreAppliedInTheOrderOfTheStart()
{
    TestContext context;
    Appearance appearance(context.settings);
    QStringList calls;
    const auto add = [&](Look look, const QString &name) {
        appearance.Add(look, [&calls, name](const SettingsStore &) { calls.append(name); });
    };
    add(Look::WritingAids, u"aids"_s);
    add(Look::ClassFormats, u"classes"_s);
    add(Look::ToolPaths, u"tools"_s);
    add(Look::DragMode, u"drag"_s);
    add(Look::Font, u"font"_s);
    add(Look::WordWrap, u"wrap"_s);
    add(Look::TabStops, u"tabs"_s);
    add(Look::TextColours, u"colours"_s);
    add(Look::BandLabels, u"captions"_s);
    add(Look::HotTracking, u"trees"_s);
    add(Look::FlatButtons, u"toolbar"_s);
    add(Look::FlatButtons, u"presets"_s);
    const auto applied = [&](LookTime time) {
        calls.clear();
        appearance.ApplyAtStart(time);
        return calls.join(u' ');
    };
    QCOMPARE(applied(LookTime::Toolbars), u"toolbar presets"_s);
    QCOMPARE(applied(LookTime::Trees), u"trees"_s);
    QCOMPARE(applied(LookTime::Captions), u"captions"_s);
    QCOMPARE(applied(LookTime::Text), u"colours tabs wrap font drag"_s);
    QCOMPARE(applied(LookTime::Tools), u"tools"_s);
    QCOMPARE(applied(LookTime::Tables), u"classes aids"_s);
    // What commands change for the run, and what waits for the next start, is not touched later.
    calls.clear();
    appearance.ApplyAll();
    QCOMPARE(calls.join(u' '), u"toolbar presets trees captions colours drag tools aids"_s);
}

void AppearanceTest::AnUnreadableSettingKeepsNothingElseBack()
{
    TestContext context;
    context.settings.SaveSetting(u"Options"_s, u"FontBold"_s, u"perhaps"_s);
    context.settings.SaveFlag(Keys::DragAndDrop, false);
    TextControl text(context.desktop);
    context.settings.SaveNumber(Keys::FontSize, 17);
    const bool bold = text.CurrentFont().bold;
    Appearance appearance(context.settings);
    AddTextLooks(appearance, text);
    const bool drops = text.viewport()->acceptDrops();
    appearance.ApplyAtStart(LookTime::Text);
    QCOMPARE(text.CurrentFont().bold, bold);
    QCOMPARE(text.CurrentFont().points, 17);
    QVERIFY(drops);
    QVERIFY(!text.viewport()->acceptDrops());
}

void AppearanceTest::TheFontOfTheTextIsStoredAndComesBack()
{
    TestContext context;
    TextControl text(context.desktop);
    Appearance appearance(context.settings);
    AddTextLooks(appearance, text);
    const TextFont first = text.CurrentFont();
    appearance.Apply(Look::Font); // nothing is stored
    QVERIFY(text.CurrentFont() == first);

    text.ApplyFont({.family = u"Monospace"_s, .points = 13.5, .bold = true, .italic = true});
    const RenameCount writes(context.folder.path());
    SaveTextFont(text, context.settings);
    QCOMPARE(writes.Count(), 1); // an end in the middle leaves no mixture of two fonts
    const TextFont stored = text.CurrentFont();
    text.ApplyFont(first);
    appearance.Apply(Look::Font);
    QVERIFY(text.CurrentFont() == stored);
    QVERIFY(text.CurrentFont().bold && text.CurrentFont().italic);
    QCOMPARE(text.CurrentFont().points, 13.5);
}

void AppearanceTest::TheRunningWindowFollowsChangedSettings()
{
    EditorWindow editor;
    editor.Open();
    const auto &bar = editor.Find<BandBar>(u"CoolBar1"_s);
    const auto &tree = editor.Find<QTreeView>(u"tvwBrowse"_s);
    const auto faces = editor.Find<QToolBar>(u"Toolbar1"_s).findChildren<QToolButton *>();
    QVERIFY(!bar.AreCaptionsShown());
    QVERIFY(!tree.hasMouseTracking());
    QVERIFY(faces.first()->autoRaise());

    editor.settings.SaveFlag(Keys::BandLabels, true);
    editor.settings.SaveFlag(Keys::FlatButtons, false);
    editor.settings.SaveFlag(Keys::HotTracking, true);
    editor.settings.SaveNumber(Keys::TabSize, 64);
    editor.settings.SaveFlag(Keys::DragAndDrop, false);
    const auto columns = [&] { return editor.Text().SendScintilla(QsciScintillaBase::SCI_GETTABWIDTH); };
    const long stops = columns();
    editor.Row(u"mnuWordWrap"_s).trigger();
    editor.window->CommandTable().Run(Cmd::mnuFontSize[FontSizeChange::Increase]);
    const TextFont zoomed = editor.Text().CurrentFont();
    editor.window->Looks().ApplyAll();
    QVERIFY(bar.AreCaptionsShown());
    QVERIFY(tree.hasMouseTracking());
    QVERIFY(editor.Find<QTreeView>(u"tvwRelated"_s).hasMouseTracking());
    QVERIFY(!faces.first()->autoRaise());
    QVERIFY(!editor.Text().viewport()->acceptDrops());
    QCOMPARE(columns(), stops); // tab stops wait for the next start
    // What the user has changed by a command stays.
    QVERIFY(editor.Text().WordWrap());
    QVERIFY(editor.Text().CurrentFont() == zoomed);
}

void AppearanceTest::TheToolAreaMakesRoomForRaisedButtons()
{
    HighButtons style;
    EditorWindow editor;
    editor.Open();
    for (QToolButton *face : editor.Find<QToolBar>(u"Toolbar1"_s).findChildren<QToolButton *>())
        face->setStyle(&style);
    const auto &bar = editor.Find<BandBar>(u"CoolBar1"_s);
    QCoreApplication::processEvents();
    const int flat = bar.height();
    editor.settings.SaveFlag(Keys::FlatButtons, false);
    editor.window->Looks().ApplyAll();
    QVERIFY(Eventually([&] { return bar.height() > flat + HighButtons::More / 2; }));
    editor.settings.SaveFlag(Keys::FlatButtons, true);
    editor.window->Looks().ApplyAll();
    QVERIFY(Eventually([&] { return bar.height() == flat; }));
}

int main(int argc, char **argv)
{
    return RunUiTest<AppearanceTest>(argc, argv);
}

#include "test_appearance.moc"
