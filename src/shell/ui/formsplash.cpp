// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/ui/formsplash.h"

#include "platform/programinfo.h"
#include "platform/ui/raisewindow.h"

#include <QGuiApplication>
#include <QLabel>
#include <QPainter>
#include <QScreen>
#include <QSvgRenderer>
#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

namespace
{

constexpr int RightMargin = 16;
constexpr int TextPixels = 13;

QLabel *NewLine(const QString &name, const QString &text, QWidget *parent)
{
    auto *line = new QLabel(parent);
    line->setObjectName(name);
    line->setTextFormat(Qt::PlainText);
    line->setText(text);
    line->setAlignment(Qt::AlignRight | Qt::AlignBottom);
    line->setAttribute(Qt::WA_TransparentForMouseEvents);
    QFont font = line->font();
    font.setPixelSize(TextPixels);
    line->setFont(font);
    QPalette colours = line->palette();
    colours.setColor(QPalette::WindowText, QColor(0xe6, 0xee, 0xf9)); // the picture is dark on every desktop
    line->setPalette(colours);
    return line;
}

} // namespace

FormSplash::FormSplash(QWidget *parent)
    : QWidget(parent, Qt::SplashScreen | Qt::FramelessWindowHint),
      m_picture(new QSvgRenderer(u":/zelvane/splash/splash.svg"_s, this)),
      lblVersion(NewLine(u"lblVersion"_s, u"Version "_s + ProgramVersion(), this)),
      lblCopyRight(NewLine(u"lblCopyRight"_s, LegalLine(), this)),
      lblWeb(NewLine(u"lblWeb"_s, QString::fromUtf16(WebAddress), this))
{
    setObjectName(u"FormSplash"_s);
    setWindowTitle(ApplicationTitle());
    setAttribute(Qt::WA_OpaquePaintEvent);
    setAttribute(Qt::WA_ShowWithoutActivating);
    setFixedSize(m_picture->defaultSize());
}

void FormSplash::ShowNow()
{
    if (const QScreen *screen = QGuiApplication::primaryScreen()) {
        QRect place = rect();
        place.moveCenter(screen->availableGeometry().center());
        move(place.topLeft());
    }
    show();
    repaint();
    QGuiApplication::sync(); // the window has to be on the screen before the long work begins
}

void FormSplash::SetOwner(QWidget &owner)
{
    KeepAbove(*this, owner);
}

void FormSplash::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    m_picture->render(&painter, rect());
}

void FormSplash::resizeEvent(QResizeEvent *)
{
    const std::pair<QLabel *, int> lines[] = {{lblVersion, 64}, {lblCopyRight, 40}, {lblWeb, 16}};
    for (const auto &[line, fromBottom] : lines) {
        const int lineHeight = line->sizeHint().height();
        line->setGeometry(0, height() - fromBottom - lineHeight, width() - RightMargin, lineHeight);
    }
}

void FormSplash::mousePressEvent(QMouseEvent *)
{
    close();
}

} // namespace zelvane
