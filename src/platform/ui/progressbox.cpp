// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/ui/progressbox.h"

#include "platform/programinfo.h"

#include <algorithm>
#include <QApplication>
#include <QProgressDialog>
#include <QPushButton>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

namespace
{

constexpr int Steps = 1000; ///< of the bar: the bytes of a large file are beyond its numbers
constexpr int TextCharacters = 50;

} // namespace

ProgressBox::ProgressBox(QWidget *window, int patience) : m_window(window), m_patience(patience) {}

ProgressBox::~ProgressBox() = default;

void ProgressBox::Begin(const QString &what)
{
    m_what = what;
    m_stopped = false;
    m_clock.start();
}

bool ProgressBox::GoOn(qint64 done, qint64 total)
{
    if (!m_box) {
        if (m_clock.elapsed() < m_patience)
            return true;
        QWidget *modal = QApplication::activeModalWidget();
        m_box = std::make_unique<QProgressDialog>(modal ? modal : m_window);
        m_box->setObjectName(u"ProgressBox"_s);
        m_box->setWindowTitle(ApplicationTitle());
        m_box->setWindowModality(Qt::ApplicationModal);
        m_box->setMinimumWidth(m_box->fontMetrics().averageCharWidth() * TextCharacters);
        // Its own button: with another one Esc is a key of both, and then of neither.
        m_box->setCancelButtonText(u"Cancel"_s);
        m_box->findChild<QPushButton *>()->setObjectName(u"cmdCancel"_s);
        m_box->setRange(0, Steps);
        m_box->setAutoClose(false);
        m_box->setAutoReset(false);
        // A long name shows its beginning and end.
        m_box->setLabelText(m_box->fontMetrics().elidedText(m_what, Qt::ElideMiddle, m_box->minimumWidth()));
        const auto stop = [this] { m_stopped = true; };
        QObject::connect(m_box.get(), &QProgressDialog::canceled, m_box.get(), stop);
        QObject::connect(m_box.get(), &QDialog::finished, m_box.get(), stop); // by whoever ends the program
        m_box->show();
    }
    if (!m_stopped) {
        m_box->setValue(total > 0 ? int(std::min<qint64>(Steps, done / std::max<qint64>(1, total / Steps)))
                                  : 0);
        QApplication::processEvents();
    }
    return !m_stopped;
}

void ProgressBox::End()
{
    m_box.reset();
}

} // namespace zelvane
