// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/desktop.h"
#include "platform/programinfo.h"
#include "platform/ui/controlversions.h"
#include "platform/ui/systemcolours.h"
#include "preferences/ui/formabout.h"
#include "preferences/ui/linkbutton.h"
#include "preferences/ui/preferencesroom.h"
#include "preferences/ui/svgpicture.h"
#include "shell/command.h"
#include "shell/layoutkeys.h"
#include "support/barewindow.h"
#include "support/modaldriver.h"
#include "support/testcontext.h"
#include "support/uitest.h"

#include <algorithm>
#include <memory>
#include <QAccessible>
#include <QColor>
#include <QImage>
#include <QLabel>
#include <QPalette>
#include <QPushButton>
#include <QtTest>
#include <utility>

using namespace Qt::Literals::StringLiterals;
using namespace zelvane;
using namespace zelvane::test;

namespace
{

const QString Web = QString::fromUtf16(WebAddress);
const QString Mail = QString::fromUtf16(AuthorAddress);

struct Box : TestContext {
    Box()
    {
        settings.SaveNumber(Keys::Used, 12);
        dialog = std::make_unique<Formabout>(editor);
        dialog->show();
        dialog->activateWindow();
        if (!QTest::qWaitForWindowActive(dialog.get()))
            qFatal("the dialog does not become active");
    }

    template <typename Widget> Widget &Find(const QString &name) const
    {
        auto *found = dialog->findChild<Widget *>(name);
        if (!found)
            qFatal("no child named %s", qPrintable(name));
        return *found;
    }
    QString Text(const QString &name) const { return Find<QLabel>(name).text(); }
    void Click(const QString &link) const
    {
        QTest::mouseClick(&Find<LinkButton>(link), Qt::LeftButton, {},
                          Find<LinkButton>(link).rect().center());
    }

    std::unique_ptr<Formabout> dialog;
};

} // namespace

class FormaboutTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void TellsWhatTheProgramIs()
    {
        const Box box;
        QCOMPARE(box.dialog->windowTitle(), u"About Zelvane"_s);
        QCOMPARE(box.Text(u"lblVersion"_s), u"Zelvane version "_s + ProgramVersion());
        QVERIFY(!box.Text(u"lblComments"_s).isEmpty());
        QCOMPARE(box.Text(u"lblCopyRight"_s), LegalLine());
        QCOMPARE(box.Text(u"lblUsed"_s), u"You used 12  times"_s);
        for (const auto &[name, address] : {std::pair(u"lblWeb"_s, Web), std::pair(u"lblMail"_s, Mail)}) {
            QCOMPARE(box.Find<LinkButton>(name).text(), address);
            QCOMPARE(
                QAccessible::queryAccessibleInterface(&box.Find<LinkButton>(name))->text(QAccessible::Name),
                address);
        }
    }

    void ShowsALogo()
    {
        const Box box;
        auto &logo = box.Find<SvgPicture>(u"imgLogo"_s);
        QCOMPARE(logo.size(), QSize(320, 120));
        const QImage picture = logo.grab().toImage();
        QVERIFY2(picture.pixelColor(8, 60) != picture.pixelColor(310, 110), "the picture is not painted");
    }

    void LinksCanBeReadOnADarkDesktop()
    {
        Box box;
        auto &link = box.Find<LinkButton>(u"lblWeb"_s);
        const QColor ground(42, 46, 50);
        QPalette dark = link.palette();
        dark.setColor(QPalette::Window, ground);
        dark.setColor(QPalette::Link, Qt::blue);
        link.setPalette(dark);
        link.setAutoFillBackground(true);
        const QImage drawn = link.grab().toImage();
        double best = 0;
        for (int x = 0; x < drawn.width(); ++x)
            for (int y = 0; y < drawn.height(); ++y)
                best = std::max(best, Contrast(drawn.pixelColor(x, y), ground));
        QVERIFY2(best >= 4, qPrintable(QString::number(best)));
    }

    void LinksOpenByMouse()
    {
        Box box;
        box.desktop.ExpectShellRun({.verb = u"open"_s, .file = Web});
        box.Click(u"lblWeb"_s);
        box.desktop.ExpectShellRun({.verb = u"open"_s, .file = u"mailto:"_s + Mail + u"?subject=&body="_s});
        box.Click(u"lblMail"_s);
        QVERIFY(box.desktop.clipboard.isEmpty());
        QVERIFY(box.dialog->isVisible());
    }

    void LinksOpenByKeyboard()
    {
        Box box;
        QVERIFY(box.Find<QPushButton>(u"bOK"_s).hasFocus());
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        QVERIFY(box.Find<LinkButton>(u"lblWeb"_s).hasFocus());
        box.desktop.ExpectShellRun({.verb = u"open"_s, .file = Web});
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
        box.desktop.CheckAllCame();
        QVERIFY2(box.dialog->isVisible(), "the key is the link's");
    }

    void WhatCannotBeOpenedGoesToTheClipboard()
    {
        Box box;
        box.desktop.ExpectShellRun({.verb = u"open"_s, .file = Web}, 31);
        box.desktop.ExpectMessage(
            {.text = u"Cannot start Browser. The following URL will be copied to Clipboard:\n\n"_s + Web +
                     u"\n\nPlease run your Internet Browser manually then paste text in the Address field."_s,
             .icon = BoxIcon::Warning});
        box.Click(u"lblWeb"_s);
        QCOMPARE(box.desktop.clipboard, Web);
        box.desktop.ExpectShellRun({.verb = u"open"_s, .file = u"mailto:"_s + Mail + u"?subject=&body="_s},
                                   31);
        box.desktop.ExpectMessage(
            {.text =
                 u"Cannot start Mail program. The following E-mail address will be copied to Clipboard:\n\n"_s +
                 Mail + u"\n\nPlease run your Mail program manually then paste text in the Address field."_s,
             .icon = BoxIcon::Warning});
        box.Click(u"lblMail"_s);
        QCOMPARE(box.desktop.clipboard, Mail);
    }

    void ButtonsShowPanelAndVersions()
    {
        Box box;
        box.desktop.ExpectShellRun({.verb = u"open"_s, .file = u"pavucontrol"_s});
        auto &panel = box.Find<QPushButton>(u"bMM"_s);
        QCOMPARE(panel.text().remove(u'&'), u"Multimedia Properties..."_s);
        panel.click();
        const QStringList versions = ControlVersions();
        QVERIFY(versions.contains(u"Qt "_s + QString::fromLatin1(qVersion())));
        QCOMPARE(versions.size(), 5);
        box.desktop.ExpectMessage(
            {.text = versions.join(u'\n'), .icon = BoxIcon::Information, .title = u"About OLE Controls"_s});
        auto &controls = box.Find<QPushButton>(u"bOLE"_s);
        QCOMPARE(controls.text().remove(u'&'), u"About OLE Controls..."_s);
        controls.click();
        QVERIFY(box.dialog->isVisible());
        box.Find<QPushButton>(u"bOK"_s).click();
        QVERIFY(!box.dialog->isVisible());
    }

    void TheCommandShowsIt()
    {
        BareWindow window;
        const PreferencesRoom room(window.context);
        ModalDriver driver;
        driver.Expect<Formabout>([&](Formabout &dialog) {
            QCOMPARE(dialog.parentWidget(), &window.window);
            QVERIFY(dialog.isModal());
            QTest::keyClick(&dialog, Qt::Key_Return);
        });
        window.commands.Run(Cmd::mnuAbout);
    }
};

int main(int argc, char **argv)
{
    return RunUiTest<FormaboutTest>(argc, argv);
}

#include "test_formabout.moc"
