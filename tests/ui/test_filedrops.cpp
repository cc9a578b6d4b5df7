// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/editorwindow.h"
#include "support/uitest.h"

#include <cstdio>
#include <QComboBox>
#include <QDragEnterEvent>
#include <QDragMoveEvent>
#include <QDropEvent>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QMenuBar>
#include <QMimeData>
#include <QToolBar>
#include <QTreeView>
#include <QUrl>
#include <QWidget>
#include <QWindow>

using namespace Qt::Literals::StringLiterals;
using namespace zelvane;
using namespace zelvane::test;

namespace
{

const Qt::DropActions AllActions = Qt::CopyAction | Qt::MoveAction | Qt::LinkAction;

struct Answer {
    bool entered = false;
    bool moved = false;
    bool dropped = false;
    Qt::DropAction action = Qt::TargetMoveAction;
};

/// A main window with all its parts, and something that is dragged over it.
struct Target : EditorWindow {
    Target()
    {
        file = WriteFile(u"dropped.orc"_s, "dropped\n");
        Open();
        window->resize(960, 680);
        QCoreApplication::processEvents();
        Text().LoadText(u"before\n"_s);
        window->Context().document.Modified = false;
    }

    /// Goes through the window, which finds the control under the pointer.
    Answer Drop(QWidget &on, const QMimeData &data, Qt::DropActions offered, Qt::KeyboardModifiers held = {})
    {
        const QPoint at = on.mapTo(window.get(), on.rect().center());
        QWindow *handle = window->windowHandle();
        Answer answer;
        QDragEnterEvent enter(at, offered, &data, Qt::LeftButton, held);
        enter.ignore();
        QCoreApplication::sendEvent(handle, &enter);
        answer.entered = enter.isAccepted();
        QDragMoveEvent move(at, offered, &data, Qt::LeftButton, held);
        move.ignore();
        QCoreApplication::sendEvent(handle, &move);
        answer.moved = move.isAccepted();
        if (!answer.moved)
            return answer;
        QDropEvent drop(at, offered, &data, Qt::LeftButton, held);
        drop.ignore();
        QCoreApplication::sendEvent(handle, &drop);
        answer.dropped = drop.isAccepted();
        answer.action = drop.dropAction();
        return answer;
    }
    bool IsOpen() { return window->Context().document.CurrentFile == file; }

    QString file;
};

/// As file managers give it: the name stands there as text, too.
void FillWithFile(QMimeData &data, const QString &file)
{
    data.setUrls({QUrl::fromLocalFile(file)});
    data.setText(file);
}

QLineEdit &OpcodeField(EditorWindow &editor)
{
    return *editor.Find<QComboBox>(u"cmbOpcodes"_s).lineEdit();
}

} // namespace

class FileDropsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void EveryPlaceOpensFiles_data();
    void EveryPlaceOpensFiles();
    void ADropIsNeverAMove_data();
    void ADropIsNeverAMove();
    void TheFirstFileIsTaken();
    void ANameThatIsNotUtf8IsToldSo();
    void TextStaysText();
    void NothingElseIsTaken();
};

void FileDropsTest::EveryPlaceOpensFiles_data()
{
    QTest::addColumn<QString>("name");
    for (const char16_t *name :
         {u"TxtEdit", u"cmbOpcodes", u"tvwBrowse", u"tvwRelated", u"Toolbar1", u"PicPlayer", u"SliderTime",
          u"tbPresets", u"cc3Panel", u"Splitter", u"picStatus", u"lblLine", u"CoolBar1", u"menu bar"})
        QTest::addRow("%s", qPrintable(QString::fromUtf16(name))) << QString::fromUtf16(name);
}

void FileDropsTest::EveryPlaceOpensFiles()
{
    QFETCH(QString, name);
    Target target;
    QWidget *place = name == u"menu bar" ? target.window->menuBar() : &target.Find<QWidget>(name);
    QVERIFY(place->isVisible());
    QVERIFY(!place->rect().isEmpty());
    QMimeData data;
    FillWithFile(data, target.file);
    const QString field = OpcodeField(target).text();
    const Answer answer = target.Drop(*place, data, AllActions);
    QVERIFY(answer.entered && answer.moved && answer.dropped);
    QCOMPARE(answer.action, Qt::CopyAction);
    QVERIFY(Eventually([&] { return target.IsOpen(); }));
    QCOMPARE(target.Text().Text(), u"dropped\n"_s);
    QCOMPARE(OpcodeField(target).text(), field);
}

void FileDropsTest::ADropIsNeverAMove_data()
{
    QTest::addColumn<Qt::DropActions>("offered");
    QTest::addColumn<Qt::KeyboardModifiers>("held");
    QTest::addColumn<Qt::DropAction>("answered");
    const Qt::KeyboardModifiers none;
    QTest::addRow("all") << AllActions << none << Qt::CopyAction;
    QTest::addRow("all, Shift proposes the move")
        << AllActions << Qt::KeyboardModifiers(Qt::ShiftModifier) << Qt::CopyAction;
    QTest::addRow("all, Ctrl+Shift proposes the link")
        << AllActions << Qt::KeyboardModifiers(Qt::ControlModifier | Qt::ShiftModifier) << Qt::CopyAction;
    QTest::addRow("copy and move, Shift") << Qt::DropActions(Qt::CopyAction | Qt::MoveAction)
                                          << Qt::KeyboardModifiers(Qt::ShiftModifier) << Qt::CopyAction;
    QTest::addRow("copy") << Qt::DropActions(Qt::CopyAction) << none << Qt::CopyAction;
    QTest::addRow("move and link") << Qt::DropActions(Qt::MoveAction | Qt::LinkAction) << none
                                   << Qt::LinkAction;
    QTest::addRow("link") << Qt::DropActions(Qt::LinkAction) << none << Qt::LinkAction;
    // Nothing is left for the source to do: it keeps the file.
    QTest::addRow("move") << Qt::DropActions(Qt::MoveAction) << none << Qt::IgnoreAction;
}

void FileDropsTest::ADropIsNeverAMove()
{
    QFETCH(Qt::DropActions, offered);
    QFETCH(Qt::KeyboardModifiers, held);
    QFETCH(Qt::DropAction, answered);
    Target target;
    QMimeData data;
    FillWithFile(data, target.file);
    for (QWidget *place :
         {static_cast<QWidget *>(&target.Text()), static_cast<QWidget *>(&OpcodeField(target))}) {
        target.window->Context().document.CurrentFile.clear();
        const Answer answer = target.Drop(*place, data, offered, held);
        QVERIFY(answer.entered && answer.moved && answer.dropped);
        QCOMPARE(answer.action, answered);
        QVERIFY(Eventually([&] { return target.IsOpen(); }));
    }
    QVERIFY(QFile::exists(target.file));
}

void FileDropsTest::TheFirstFileIsTaken()
{
    Target target;
    const QString second = target.WriteFile(u"second.orc"_s, "second\n");
    QMimeData data;
    data.setUrls(
        {QUrl(u"https://example.org/"_s), QUrl::fromLocalFile(target.file), QUrl::fromLocalFile(second)});
    QVERIFY(target.Drop(target.Find<QWidget>(u"picStatus"_s), data, AllActions).dropped);
    QVERIFY(Eventually([&] { return target.IsOpen(); }));
    QCoreApplication::processEvents();
    QVERIFY(target.IsOpen());
}

void FileDropsTest::ANameThatIsNotUtf8IsToldSo()
{
    Target target;
    const QByteArray folder = QFile::encodeName(target.folder.path());
    std::FILE *made = std::fopen((folder + "/caf\xE9.orc").constData(), "wb");
    QVERIFY(made);
    std::fclose(made);
    const QUrl url = QUrl::fromEncoded("file://" + folder + "/caf%E9.orc");
    QMimeData data;
    data.setUrls({url});
    bool told = false;
    target.desktop.ExpectMessage(
        {.text = u"Unable to open "_s + url.toLocalFile() +
                 u".\n\nA file whose name is not UTF-8 cannot be opened. Rename it first."_s,
         .icon = BoxIcon::Warning},
        BoxAnswer::Ok, [&] { told = true; });
    QVERIFY(target.Drop(target.Text(), data, AllActions).dropped);
    QVERIFY(Eventually([&] { return told; }));
}

void FileDropsTest::TextStaysText()
{
    Target target;
    QMimeData data;
    data.setText(u"some words"_s);
    Answer answer = target.Drop(target.Text(), data, AllActions);
    QVERIFY(answer.entered && answer.moved && answer.dropped);
    QVERIFY(target.Text().Text().contains(u"some words"_s));
    answer = target.Drop(OpcodeField(target), data, AllActions);
    QVERIFY(answer.dropped);
    QVERIFY(OpcodeField(target).text().contains(u"some words"_s));
    // A link to another place is no file.
    QMimeData link;
    link.setUrls({QUrl(u"https://example.org/"_s)});
    link.setText(u"https://example.org/"_s);
    QVERIFY(target.Drop(target.Text(), link, AllActions).dropped);
    QVERIFY(target.Text().Text().contains(u"https://example.org/"_s));
    QVERIFY(!target.IsOpen());
}

void FileDropsTest::NothingElseIsTaken()
{
    Target target;
    QMimeData data;
    data.setText(u"some words"_s);
    QVERIFY(!target.Drop(target.Find<QWidget>(u"picStatus"_s), data, AllActions).entered);
    QVERIFY(!target.Drop(target.Find<QWidget>(u"tvwBrowse"_s), data, AllActions).entered);
    QMimeData link;
    link.setUrls({QUrl(u"https://example.org/"_s)});
    QVERIFY(!target.Drop(*target.window->menuBar(), link, AllActions).entered);
}

int main(int argc, char **argv)
{
    return RunUiTest<FileDropsTest>(argc, argv);
}

#include "test_filedrops.moc"
