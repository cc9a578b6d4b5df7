// SPDX-License-Identifier: GPL-3.0-or-later

// The player's panel by mouse and keys.

#include "language/ui/languageroom.h"
#include "platform/mediacontrol.h"
#include "player/ui/playerpanel.h"
#include "player/ui/playerroom.h"
#include "player/ui/timeslider.h"
#include "shell/bands.h"
#include "shell/command.h"
#include "shell/ui/icons.h"
#include "shell/windowsteps.h"
#include "support/barewindow.h"
#include "support/scriptedmediacontrol.h"
#include "support/uitest.h"

#include <memory>
#include <QAction>
#include <QApplication>
#include <QImage>
#include <QKeyEvent>
#include <QLabel>
#include <QMenu>
#include <QStyle>
#include <QStyleOptionSlider>
#include <QTimer>
#include <QToolBar>
#include <QToolButton>
#include <QToolTip>
#include <QTreeView>
#include <QWheelEvent>
#include <QWidget>
#include <utility>

using namespace Qt::Literals::StringLiterals;
using namespace zelvane;
using namespace zelvane::test;

namespace
{

/// A service that plays one sound of ten seconds: it knows its mode, and stays where it is put.
class OneSound : public ScriptedMediaControl
{
public:
    OneSound()
    {
        Answer(u"status gino length"_s, u"10000"_s);
        SetMode({});
    }

    MediaAnswer Send(const QString &command) override
    {
        const MediaAnswer answer = ScriptedMediaControl::Send(command);
        if (answer.code != 0)
            return answer;
        if (command.startsWith(u"open "_s)) {
            m_file = command.section(u' ', 1, -3);
            SetMode(u"stopped"_s);
            SetPosition(0);
        } else if (command.startsWith(u"play "_s) || command.startsWith(u"resume "_s)) {
            SetMode(u"playing"_s);
        } else if (command.startsWith(u"pause "_s)) {
            SetMode(u"paused"_s);
        } else if (command.startsWith(u"close "_s)) {
            SetMode({});
        } else if (command.startsWith(u"seek gino to "_s)) {
            SetMode(u"stopped"_s);
            SetPosition(command.section(u' ', -1).toInt());
        }
        return answer;
    }

    void SetPosition(int position) { Answer(u"status gino position"_s, QString::number(position)); }
    QString Mode() const { return answers.at(u"status gino mode"_s).text; }
    /// The commands since the last call, but for the questions.
    QStringList TakeOrders()
    {
        QStringList orders;
        for (const QString &command : TakeCommands()) {
            if (!command.startsWith(u"status "_s) && !command.startsWith(u"info "_s))
                orders.append(command);
        }
        return orders;
    }

private:
    void SetMode(const QString &mode)
    {
        Answer(u"status gino mode"_s, mode);
        Answer(u"info gino file"_s, mode.isEmpty() ? QString() : m_file);
    }

    QString m_file;
};

/// A window with the player, as wide as its panel is comfortable.
struct PlayerWindow : BareWindow {
    OneSound *media = new OneSound;
    PlayerRoom room{context, std::unique_ptr<MediaControl>(media)};
    PlayerPanel &PicPlayer = Find<PlayerPanel>(u"PicPlayer"_s);
    TimeSlider &SliderTime = *PicPlayer.SliderTime;
    QLabel &lblPos = *PicPlayer.lblPos;
    QTimer &Timer1 = *PicPlayer.Timer1;

    PlayerWindow()
    {
        bands.setGeometry(0, 30, 600, bands.heightForWidth(600));
        window.resize(640, 200);
        window.show();
        window.activateWindow();
        if (!QTest::qWaitForWindowActive(&window))
            QTest::qFail("the window has not become the active one", __FILE__, __LINE__);
    }

    QToolButton &Button(const QString &key) { return Find<QToolButton>(u"tbPlayer_"_s + key); }
    void Press(const QString &key) { QTest::mouseClick(&Button(key), Qt::LeftButton); }
    /// Opens a document with a sound, and plays it.
    QString Play()
    {
        documents.OpenFile(WriteFile(u"x.orc"_s));
        const QString sound = WriteFile(u"x.wav"_s, "RIFF");
        Press(u"play"_s);
        media->TakeCommands();
        return sound;
    }
    /// Where the slider has its handle at that time.
    QPoint PlaceOf(int time) const
    {
        QStyleOptionSlider option;
        option.initFrom(&SliderTime);
        option.orientation = Qt::Horizontal;
        option.minimum = SliderTime.minimum();
        option.maximum = SliderTime.maximum();
        option.sliderPosition = option.sliderValue = time;
        option.subControls = QStyle::SC_All;
        return SliderTime.style()
            ->subControlRect(QStyle::CC_Slider, &option, QStyle::SC_SliderHandle, &SliderTime)
            .center();
    }
};

} // namespace

class PlayerTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void NothingPlaysAtTheStart();
    void TheButtonShowsThatTheDocumentHasASound();
    void ButtonsPlayPauseAndStop();
    void TheTimerShowsThePosition();
    void AClickOnTheTimeSwapsItsMode();
    void TheMouseDragsTheSlider();
    void AClickTakesTheSliderThere();
    void APausedSoundStaysPausedAtItsNewPlace();
    void KeysMoveTheSlider();
    void KeysThatMoveNothingLeaveTheTimer();
    void TheWheelMovesTheSlider();
    void TheEndGivesTheKeyboardToTheText();
    void TheEndBehindAnotherWindowLeavesTheKeyboardToTheText();
    void TheEndUnderTheMouseIsNoSeek();
    void TheLoopButtonFollowsItsRow();
    void LoopGivesTheKeyboardToTheOutline();
    void ARightClickShowsTheMenu();
    void TheMenuOffersFileOperationsOfAnOpenSound();
    void OtherRoomsPlaySounds();
    void TheEndOfTheWindowClosesTheSound();
};

void PlayerTest::NothingPlaysAtTheStart()
{
    PlayerWindow on;
    QVERIFY(!on.SliderTime.isEnabled());
    QVERIFY(!on.lblPos.isEnabled());
    QVERIFY(on.lblPos.text().isEmpty());
    QVERIFY(!on.Timer1.isActive());
    QCOMPARE(on.Timer1.interval(), 50);
    for (const auto &[key, enabled] :
         {std::pair{u"play"_s, true}, {u"pause"_s, false}, {u"stop"_s, false}, {u"loop"_s, true}})
        QCOMPARE(on.Button(key).isEnabled(), enabled);
    // Without a document nothing is to be played, and nothing is said.
    on.Press(u"play"_s);
    QVERIFY(on.media->TakeOrders().isEmpty());
    QVERIFY(on.status.shown.isEmpty());
}

void PlayerTest::TheButtonShowsThatTheDocumentHasASound()
{
    PlayerWindow on;
    const QImage plain = Picture(Icons::Load(u"play"_s));
    const QImage playable = Picture(Icons::Load(u"playable"_s));
    QVERIFY(plain != playable);
    const QString sound = on.WriteFile(u"x.wav"_s);
    on.documents.OpenFile(on.WriteFile(u"x.orc"_s));
    QCOMPARE(Picture(on.Button(u"play"_s).icon()), playable);
    QCOMPARE(on.Button(u"play"_s).toolTip(), u"Play "_s + sound + u" (F9)"_s);
    on.documents.OpenFile(on.WriteFile(u"y.orc"_s));
    QCOMPARE(Picture(on.Button(u"play"_s).icon()), plain);
    QCOMPARE(on.Button(u"play"_s).toolTip(), u"Play/Restart (F9)"_s);
    on.documents.OpenFile(on.folder.filePath(u"x.orc"_s));
    QCOMPARE(Picture(on.Button(u"play"_s).icon()), playable);
    on.Press(u"play"_s);
    QCOMPARE(Picture(on.Button(u"play"_s).icon()), plain);
    QCOMPARE(on.Button(u"play"_s).toolTip(), u"Play/Restart (F9)"_s);
}

void PlayerTest::ButtonsPlayPauseAndStop()
{
    PlayerWindow on;
    on.documents.OpenFile(on.WriteFile(u"x.orc"_s));
    const QString sound = on.WriteFile(u"x.wav"_s, "RIFF");
    on.Press(u"play"_s);
    QCOMPARE(on.media->TakeOrders(),
             QStringList({u"close gino"_s, u"open "_s + sound + u" alias gino"_s, u"play gino notify"_s,
                          u"set gino time format milliseconds "_s}));
    QVERIFY(on.SliderTime.isEnabled());
    QCOMPARE(on.SliderTime.maximum(), 10000);
    QVERIFY(on.lblPos.isEnabled());
    QVERIFY(on.Timer1.isActive());
    QVERIFY(on.status.text.startsWith(sound + u" - "_s));
    QVERIFY(on.commands.IsEnabled(Cmd::mnuStop));

    on.Press(u"pause"_s);
    QCOMPARE(on.media->TakeOrders(), QStringList(u"pause gino"_s));
    QVERIFY(!on.Timer1.isActive());
    QVERIFY(on.SliderTime.isEnabled());
    on.Press(u"pause"_s);
    QCOMPARE(on.media->TakeOrders(), QStringList(u"resume gino"_s));
    QVERIFY(on.Timer1.isActive());
    on.Press(u"play"_s);
    QCOMPARE(on.media->TakeOrders(), QStringList({u"seek gino to start"_s, u"play gino notify"_s}));

    on.Press(u"pause"_s);
    on.media->TakeOrders();
    on.Press(u"stop"_s);
    QCOMPARE(on.media->TakeOrders(), QStringList({u"stop gino"_s, u"close gino"_s}));
    QVERIFY(!on.SliderTime.isEnabled());
    QVERIFY(!on.Button(u"stop"_s).isEnabled());
    QVERIFY(!on.Button(u"pause"_s).isEnabled());
    QVERIFY(on.Button(u"play"_s).isEnabled());
    QVERIFY(on.lblPos.text().isEmpty());
    QVERIFY(!on.Timer1.isActive());
}

void PlayerTest::TheTimerShowsThePosition()
{
    PlayerWindow on;
    on.Play();
    on.media->SetPosition(4321);
    QVERIFY(Eventually([&] { return on.SliderTime.value() == 4321; }));
    QCOMPARE(on.lblPos.text(), u"0:04"_s);
    QVERIFY(on.media->TakeOrders().isEmpty());
}

void PlayerTest::AClickOnTheTimeSwapsItsMode()
{
    PlayerWindow on;
    on.Play();
    on.Press(u"pause"_s);
    on.media->SetPosition(4000);
    QCOMPARE(on.lblPos.property("Tag").toString(), QString());
    QTest::mouseClick(&on.lblPos, Qt::LeftButton);
    QCOMPARE(on.lblPos.text(), u"0:06"_s);
    QCOMPARE(on.lblPos.toolTip(), u"Remaining Time"_s);
    QCOMPARE(on.lblPos.property("Tag").toString(), u"r"_s);
    QTest::mouseClick(&on.lblPos, Qt::RightButton);
    QCOMPARE(on.lblPos.text(), u"0:06"_s);
    QTest::mouseClick(&on.lblPos, Qt::LeftButton);
    QCOMPARE(on.lblPos.text(), u"0:04"_s);
    QCOMPARE(on.lblPos.toolTip(), u"Elapsed Time"_s);
    on.Press(u"stop"_s);
    QTest::mouseClick(&on.lblPos, Qt::LeftButton);
    QVERIFY(on.lblPos.text().isEmpty());
    QCOMPARE(on.lblPos.toolTip(), u"Elapsed Time"_s);
}

void PlayerTest::TheMouseDragsTheSlider()
{
    PlayerWindow on;
    on.Play();
    QTest::mousePress(&on.SliderTime, Qt::LeftButton, {}, on.PlaceOf(0));
    QVERIFY(!on.Timer1.isActive());
    QCOMPARE(QToolTip::text(), u"0:00"_s);
    QTest::mouseMove(&on.SliderTime, on.PlaceOf(5000));
    QTRY_COMPARE(QToolTip::text(), u"0:05"_s);
    QVERIFY(on.media->TakeOrders().isEmpty());
    QTest::mouseRelease(&on.SliderTime, Qt::LeftButton, {}, on.PlaceOf(5000));
    const int place = on.SliderTime.value();
    QVERIFY(qAbs(place - 5000) < 150);
    QCOMPARE(on.media->TakeOrders(),
             QStringList({u"seek gino to "_s + QString::number(place), u"play gino notify"_s}));
    QVERIFY(on.Timer1.isActive());
    QTRY_VERIFY(!QToolTip::isVisible());
}

void PlayerTest::AClickTakesTheSliderThere()
{
    PlayerWindow on;
    on.Play();
    QTest::mouseClick(&on.SliderTime, Qt::RightButton, {}, on.PlaceOf(8000));
    if (QWidget *menu = QApplication::activePopupWidget())
        menu->close();
    QVERIFY(on.Timer1.isActive());
    QVERIFY(on.media->TakeOrders().isEmpty());
    QTest::mouseClick(&on.SliderTime, Qt::LeftButton, {}, on.PlaceOf(8000));
    const QStringList orders = on.media->TakeOrders();
    QCOMPARE(orders.size(), 2);
    QVERIFY(qAbs(orders.constFirst().section(u' ', -1).toInt() - 8000) < 150);
    QCOMPARE(orders[1], u"play gino notify"_s);
}

void PlayerTest::APausedSoundStaysPausedAtItsNewPlace()
{
    PlayerWindow on;
    on.Play();
    on.Press(u"pause"_s);
    on.media->TakeOrders();
    QTest::mouseClick(&on.SliderTime, Qt::LeftButton, {}, on.PlaceOf(2000));
    const QStringList orders = on.media->TakeOrders();
    QCOMPARE(orders.mid(1), QStringList({u"play gino"_s, u"pause gino"_s}));
    QVERIFY(orders[0].startsWith(u"seek gino to "_s));
    QVERIFY(!on.Timer1.isActive());
}

void PlayerTest::KeysMoveTheSlider()
{
    PlayerWindow on;
    on.Play();
    on.SliderTime.setFocus();
    QTest::keyPress(&on.SliderTime, Qt::Key_Right);
    QVERIFY(!on.Timer1.isActive());
    QVERIFY(on.media->TakeOrders().isEmpty());
    QTest::keyRelease(&on.SliderTime, Qt::Key_Right);
    QCOMPARE(on.media->TakeOrders(), QStringList({u"seek gino to 100"_s, u"play gino notify"_s}));
    QVERIFY(on.Timer1.isActive());
    QTest::keyClick(&on.SliderTime, Qt::Key_PageUp);
    QCOMPARE(on.media->TakeOrders(), QStringList({u"seek gino to 1100"_s, u"play gino notify"_s}));
    QTest::keyClick(&on.SliderTime, Qt::Key_End);
    QCOMPARE(on.media->TakeOrders().value(0), u"seek gino to 10000"_s);

    // A key that is held down counts once, when it comes up.
    QTest::keyPress(&on.SliderTime, Qt::Key_Left);
    for (int i = 0; i < 3; ++i) {
        for (const QEvent::Type type : {QEvent::KeyRelease, QEvent::KeyPress}) {
            QKeyEvent repeated(type, Qt::Key_Left, Qt::NoModifier, {}, true);
            QApplication::sendEvent(&on.SliderTime, &repeated);
        }
    }
    QVERIFY(on.media->TakeOrders().isEmpty());
    QTest::keyRelease(&on.SliderTime, Qt::Key_Left);
    QCOMPARE(on.media->TakeOrders().value(0), u"seek gino to 9600"_s);

    // Shift comes up before the key that moved it.
    QTest::keyPress(&on.SliderTime, Qt::Key_Shift);
    QTest::keyPress(&on.SliderTime, Qt::Key_Home, Qt::ShiftModifier);
    QTest::keyRelease(&on.SliderTime, Qt::Key_Shift, Qt::ShiftModifier);
    QVERIFY(on.media->TakeOrders().isEmpty());
    QTest::keyRelease(&on.SliderTime, Qt::Key_Home);
    QCOMPARE(on.media->TakeOrders().value(0), u"seek gino to 0"_s);
}

void PlayerTest::KeysThatMoveNothingLeaveTheTimer()
{
    PlayerWindow on;
    on.Play();
    on.SliderTime.setFocus();
    for (const Qt::Key key : {Qt::Key_Home, Qt::Key_Shift, Qt::Key_A}) {
        on.SliderTime.setValue(0);
        QTest::keyPress(&on.SliderTime, key);
        QVERIFY(!on.Timer1.isActive());
        QTest::keyRelease(&on.SliderTime, key);
        QVERIFY(on.Timer1.isActive());
    }
    QVERIFY(on.media->TakeOrders().isEmpty());
    // The keyboard goes elsewhere while a key is down.
    QTest::keyPress(&on.SliderTime, Qt::Key_A);
    on.control.setFocus();
    QVERIFY(on.Timer1.isActive());
    QTest::keyRelease(&on.control, Qt::Key_A);
    QVERIFY(on.media->TakeOrders().isEmpty());
    on.SliderTime.setFocus();
    QTest::keyPress(&on.SliderTime, Qt::Key_End);
    on.control.setFocus();
    QCOMPARE(on.media->TakeOrders(), QStringList({u"seek gino to 10000"_s, u"play gino notify"_s}));
    QVERIFY(on.Timer1.isActive());
    // A paused sound has no timer to leave.
    on.Press(u"pause"_s);
    on.SliderTime.setFocus();
    QTest::keyClick(&on.SliderTime, Qt::Key_A);
    QVERIFY(!on.Timer1.isActive());
}

void PlayerTest::TheWheelMovesTheSlider()
{
    PlayerWindow on;
    on.Play();
    const QPoint at = on.SliderTime.rect().center();
    QWheelEvent wheel(at, on.SliderTime.mapToGlobal(at), {}, QPoint(0, 120), Qt::NoButton, Qt::NoModifier,
                      Qt::NoScrollPhase, false);
    QApplication::sendEvent(&on.SliderTime, &wheel);
    const int place = on.SliderTime.value();
    QVERIFY(place > 0);
    QCOMPARE(on.media->TakeOrders(),
             QStringList({u"seek gino to "_s + QString::number(place), u"play gino notify"_s}));
    QVERIFY(on.Timer1.isActive());
}

void PlayerTest::TheEndGivesTheKeyboardToTheText()
{
    PlayerWindow on;
    on.Play();
    on.SliderTime.setFocus();
    QVERIFY(on.SliderTime.hasFocus());
    on.media->End();
    QVERIFY(on.control.hasFocus());
    QVERIFY(!on.SliderTime.isEnabled());
    QCOMPARE(on.SliderTime.value(), 0);
    QCOMPARE(on.media->TakeOrders(), QStringList({u"stop gino"_s, u"close gino"_s}));
    // The next play opens the file anew.
    on.Press(u"play"_s);
    QVERIFY(on.media->TakeOrders().value(1).startsWith(u"open "_s));
}

void PlayerTest::TheEndBehindAnotherWindowLeavesTheKeyboardToTheText()
{
    PlayerWindow on;
    on.Play();
    on.SliderTime.setFocus();
    QWidget other;
    other.show();
    other.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&other));
    QVERIFY(!on.SliderTime.hasFocus());
    on.media->End();
    QCOMPARE(on.SliderTime.window()->focusWidget(), &on.control);
}

void PlayerTest::TheEndUnderTheMouseIsNoSeek()
{
    PlayerWindow on;
    on.Play();
    QTest::mousePress(&on.SliderTime, Qt::LeftButton, {}, on.PlaceOf(9000));
    on.media->End();
    on.media->TakeOrders();
    QTest::mouseRelease(&on.SliderTime, Qt::LeftButton, {}, on.PlaceOf(9000));
    QVERIFY(on.media->TakeOrders().isEmpty());
    on.Press(u"play"_s);
    on.media->TakeOrders();
    QTest::mouseMove(&on.SliderTime, on.PlaceOf(3000));
    QVERIFY(on.Timer1.isActive());
    QVERIFY(on.media->TakeOrders().isEmpty());
}

void PlayerTest::TheLoopButtonFollowsItsRow()
{
    PlayerWindow on;
    on.Play();
    on.Press(u"loop"_s);
    QVERIFY(on.commands.IsChecked(Cmd::mnuLoop));
    QVERIFY(on.Button(u"loop"_s).isChecked());
    on.media->End();
    QCOMPARE(on.media->TakeOrders(), QStringList(u"play gino from 0 notify"_s));
    QVERIFY(on.SliderTime.isEnabled());
    QVERIFY(on.Timer1.isActive());
    on.commands.Action(Cmd::mnuLoop)->trigger();
    QVERIFY(!on.commands.IsChecked(Cmd::mnuLoop));
    QVERIFY(!on.Button(u"loop"_s).isChecked());
    QVERIFY(on.SliderTime.isEnabled());
    on.media->End();
    QVERIFY(!on.SliderTime.isEnabled());
}

void PlayerTest::LoopGivesTheKeyboardToTheOutline()
{
    PlayerWindow on;
    const LanguageRoom language(on.context);
    on.panel.setGeometry(0, 100, 200, 90);
    on.panel.show();
    auto &tree = on.Find<QTreeView>(u"tvwBrowse"_s);
    on.control.setFocus();
    on.commands.Run(Cmd::mnuLoop);
    QVERIFY(on.control.hasFocus());
    on.commands.Run(Cmd::mnuBrowse);
    on.control.setFocus();
    on.commands.Run(Cmd::mnuLoop);
    QVERIFY(tree.hasFocus());
}

void PlayerTest::ARightClickShowsTheMenu()
{
    PlayerWindow on;
    const auto shows = [&](QWidget &at) {
        const QPoint place = at.rect().center();
        QTest::mouseClick(at.window()->windowHandle(), Qt::RightButton, {}, at.mapTo(at.window(), place));
        QWidget *menu = QApplication::activePopupWidget();
        const bool shown = menu && menu->objectName() == u"mnuPlayer"_s;
        if (menu)
            menu->close();
        return shown;
    };
    for (int playing = 0; playing < 2; ++playing) {
        QVERIFY(shows(on.SliderTime));
        QVERIFY(shows(on.lblPos));
        QVERIFY(shows(on.Button(u"play"_s)));
        QVERIFY(shows(on.Button(u"stop"_s)));
        QVERIFY(shows(*on.PicPlayer.tbPlayer));
        QVERIFY(shows(on.PicPlayer));
        QCOMPARE(on.SliderTime.isEnabled(), playing == 1);
        on.Play();
    }
}

void PlayerTest::TheMenuOffersFileOperationsOfAnOpenSound()
{
    PlayerWindow on;
    on.commands.Bind(Cmd::mnuSSO, [](FileOperation) {});
    for (const bool playing : {false, true}) {
        if (playing)
            on.Play();
        on.commands.MenuOpening(Menu::mnuPlayer);
        for (const FileOperation operation : {FileOperation::Move, FileOperation::Copy, FileOperation::Rename,
                                              FileOperation::Delete, FileOperation::Properties})
            QCOMPARE(on.commands.IsEnabled(Cmd::mnuSSO[operation]), playing);
    }
}

void PlayerTest::OtherRoomsPlaySounds()
{
    PlayerWindow on;
    on.steps.sound->MCIopen(u"/sounds/other.wav"_s);
    QCOMPARE(on.media->TakeOrders().value(1), u"open /sounds/other.wav alias gino"_s);
    QVERIFY(on.SliderTime.isEnabled());
}

void PlayerTest::TheEndOfTheWindowClosesTheSound()
{
    PlayerWindow on;
    on.windowSteps.Run(WindowMoment::Closing);
    QCOMPARE(on.media->TakeOrders(), QStringList(u"close gino"_s));
}

int main(int argc, char **argv)
{
    return RunUiTest<PlayerTest>(argc, argv);
}

#include "test_player.moc"
