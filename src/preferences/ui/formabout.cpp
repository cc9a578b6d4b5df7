// SPDX-License-Identifier: GPL-3.0-or-later
#include "preferences/ui/formabout.h"

#include "platform/programinfo.h"
#include "platform/ui/controlversions.h"
#include "preferences/about.h"
#include "preferences/ui/linkbutton.h"
#include "preferences/ui/svgpicture.h"
#include "shell/editorcontext.h"
#include "shell/errorreport.h"
#include "shell/ui/form.h"

#include <functional>
#include <QFont>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

namespace
{

QLabel *NewLine(QWidget *parent, const QString &name, const QString &text)
{
    auto *line = Named(new QLabel(parent), name);
    line->setTextFormat(Qt::PlainText);
    line->setText(text);
    return line;
}

} // namespace

Formabout::Formabout(EditorContext &editor, QWidget *parent)
    : QDialog(parent),
      imgLogo(Named(new SvgPicture(u":/zelvane/logos/"_s + RandomLogo() + u".svg"_s, this), u"imgLogo"_s,
                    ApplicationTitle())),
      lblVersion(NewLine(this, u"lblVersion"_s, VersionLine())),
      lblComments(NewLine(this, u"lblComments"_s, ProgramComments())),
      lblCopyRight(NewLine(this, u"lblCopyRight"_s, LegalLine())),
      lblUsed(NewLine(this, u"lblUsed"_s, UsedLine(editor.settings))),
      lblWeb(Named(new LinkButton(QString::fromUtf16(WebAddress), this), u"lblWeb"_s)),
      lblMail(Named(new LinkButton(QString::fromUtf16(AuthorAddress), this), u"lblMail"_s)),
      bMM(Named(new QPushButton(u"&Multimedia Properties..."_s, this), u"bMM"_s)),
      bOLE(Named(new QPushButton(u"&About OLE Controls..."_s, this), u"bOLE"_s)),
      bOK(Named(new QPushButton(u"OK"_s, this), u"bOK"_s))
{
    setObjectName(u"Formabout"_s);
    setWindowTitle(u"About "_s + ApplicationTitle());
    QFont bold = lblVersion->font();
    bold.setBold(true);
    lblVersion->setFont(bold);
    LayOut();
    Connect(editor);
    SetEnterAndEscape(*this, bOK, bOK);
    SetTabOrder({bOK, lblWeb, lblMail, bMM, bOLE});
    bOK->setFocus();
}

void Formabout::LayOut()
{
    auto *buttons = new QHBoxLayout;
    buttons->addWidget(bMM);
    buttons->addWidget(bOLE);
    buttons->addStretch();
    buttons->addWidget(bOK);

    auto *all = new QVBoxLayout(this);
    all->addWidget(imgLogo, 0, Qt::AlignHCenter);
    for (QLabel *line : {lblVersion, lblComments, lblCopyRight, lblUsed})
        all->addWidget(line);
    for (LinkButton *link : {lblWeb, lblMail})
        all->addWidget(link);
    all->addSpacing(fontMetrics().height() / 2);
    all->addLayout(buttons);
    all->setSizeConstraint(QLayout::SetFixedSize);
}

void Formabout::Connect(EditorContext &editor)
{
    Desktop &desktop = editor.desktop;
    const auto guarded = [&desktop](const std::function<void()> &work) {
        return [&desktop, work] { Guarded(desktop, work); };
    };
    connect(lblWeb, &LinkButton::clicked, this,
            guarded([&desktop] { OpenWebAddress(desktop, QString::fromUtf16(WebAddress)); }));
    connect(lblMail, &LinkButton::clicked, this,
            guarded([&desktop] { SendMail(desktop, QString::fromUtf16(AuthorAddress), {}, {}); }));
    connect(bMM, &QPushButton::clicked, this, guarded([&desktop] { ShowMultimediaProperties(desktop); }));
    connect(bOLE, &QPushButton::clicked, this,
            guarded([&desktop] { ShowControlVersions(ControlVersions(), desktop); }));
}

} // namespace zelvane
