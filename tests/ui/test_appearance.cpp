// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/ui/appearance.h"

#include "platform/ui/textcontrol.h"
#include "shell/editorkeys.h"
#include "shell/layoutkeys.h"
#include "shell/settings.h"
#include "shell/ui/bandbar.h"
#include "support/editorwindow.h"
#include "support/testcontext.h"
#include "support/uitest.h"

#include <QToolBar>
#include <QToolButton>
#include <QTreeWidget>

using namespace Qt::Literals::StringLiterals;
using namespace zelvane;
using namespace zelvane::test;

class AppearanceTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void LooksAreAppliedInTheOrderGiven();
    void AnUnreadableSettingKeepsNothingElseBack();
    void TheFontOfTheTextIsStoredAndComesBack();
    void TheRunningWindowFollowsChangedSettings();
};

void AppearanceTest::LooksAreAppliedInTheOrderGiven()
{
    TestContext context;
    Appearance appearance(context.settings);
    QStringList calls;
    const auto add = [&](Look look, const QString &name) {
        appearance.Add(look, [&calls, name](const SettingsStore &) { calls.append(name); });
    };
    add(Look::FlatButtons, u"toolbar"_s);
    add(Look::BandLabels, u"labels"_s);
    add(Look::FlatButtons, u"presets"_s);
    appearance.Apply({Look::BandLabels, Look::FlatButtons, Look::Font});
    QCOMPARE(calls, (QStringList{u"labels"_s, u"toolbar"_s, u"presets"_s}));
    calls.clear();
    appearance.Apply({Look::FlatButtons, Look::BandLabels});
    QCOMPARE(calls, (QStringList{u"toolbar"_s, u"presets"_s, u"labels"_s}));
}

void AppearanceTest::AnUnreadableSettingKeepsNothingElseBack()
{
    TestContext context;
    context.settings.SaveSetting(u"Options"_s, u"FontBold"_s, u"perhaps"_s);
    TextControl text(context.desktop);
    context.settings.SaveNumber(Keys::FontSize, 17);
    const bool bold = text.CurrentFont().bold;
    Appearance appearance(context.settings);
    AddTextLooks(appearance, text);
    bool applied = false;
    appearance.Add(Look::HotTracking, [&](const SettingsStore &) { applied = true; });
    appearance.Apply({Look::Font, Look::HotTracking});
    QCOMPARE(text.CurrentFont().bold, bold);
    QCOMPARE(text.CurrentFont().points, 17);
    QVERIFY(applied);
}

void AppearanceTest::TheFontOfTheTextIsStoredAndComesBack()
{
    TestContext context;
    TextControl text(context.desktop);
    Appearance appearance(context.settings);
    AddTextLooks(appearance, text);
    const TextFont first = text.CurrentFont();
    appearance.Apply({Look::Font}); // nothing is stored
    QVERIFY(text.CurrentFont() == first);

    text.ApplyFont({.family = u"Monospace"_s, .points = 13.5, .bold = true, .italic = true});
    SaveTextFont(text, context.settings);
    const TextFont stored = text.CurrentFont();
    text.ApplyFont(first);
    appearance.Apply({Look::Font});
    QVERIFY(text.CurrentFont() == stored);
    QVERIFY(text.CurrentFont().bold && text.CurrentFont().italic);
    QCOMPARE(text.CurrentFont().points, 13.5);
}

void AppearanceTest::TheRunningWindowFollowsChangedSettings()
{
    EditorWindow editor;
    editor.Open();
    const auto &bar = editor.Find<BandBar>(u"CoolBar1"_s);
    const auto &tree = editor.Find<QTreeWidget>(u"tvwBrowse"_s);
    const auto faces = editor.Find<QToolBar>(u"Toolbar1"_s).findChildren<QToolButton *>();
    QVERIFY(!bar.AreCaptionsShown());
    QVERIFY(!tree.hasMouseTracking());
    QVERIFY(faces.first()->autoRaise());

    editor.settings.SaveFlag(Keys::BandLabels, true);
    editor.settings.SaveFlag(Keys::FlatButtons, false);
    editor.settings.SaveFlag(Keys::HotTracking, true);
    editor.window->Looks().Apply(
        {Look::BandLabels, Look::FlatButtons, Look::HotTracking, Look::TextColours, Look::ToolPaths});
    QVERIFY(bar.AreCaptionsShown());
    QVERIFY(tree.hasMouseTracking());
    QVERIFY(editor.Find<QTreeWidget>(u"tvwRelated"_s).hasMouseTracking());
    QVERIFY(!faces.first()->autoRaise());
}

int main(int argc, char **argv)
{
    return RunUiTest<AppearanceTest>(argc, argv);
}

#include "test_appearance.moc"
