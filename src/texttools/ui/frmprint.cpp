// SPDX-License-Identifier: GPL-3.0-or-later
#include "texttools/ui/frmprint.h"

#include "platform/programinfo.h"
#include "platform/runtimeerror.h"
#include "platform/styledtext.h"
#include "platform/ui/textprinter.h"

#include <QMarginsF>
#include <QPageLayout>
#include <QPrintDialog>
#include <QPrinter>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

namespace
{

constexpr double Margin = 20; ///< millimetres, until the user sets others

} // namespace

frmPrint::frmPrint(QWidget *window) : m_window(window), m_progress(window) {}

frmPrint::~frmPrint() = default;

PrintedPart frmPrint::ShowPrinter(const QString &title, bool selected)
{
    m_title = title;
    if (!m_printer) {
        m_printer = std::make_unique<QPrinter>(QPrinter::HighResolution);
        m_printer->setPageMargins({Margin, Margin, Margin, Margin}, QPageLayout::Millimeter);
        m_printer->setCreator(ApplicationTitle());
    }
    m_printer->setDocName(title);
    m_printer->setPrintRange(selected ? QPrinter::Selection : QPrinter::AllPages);
    QPrintDialog cmPrint(m_printer.get(), m_window);
    cmPrint.setObjectName(u"cmPrint"_s);
    cmPrint.setOption(QPrintDialog::PrintSelection, selected);
    if (cmPrint.exec() != QPrintDialog::Accepted)
        throw RunTimeError(ErrorNumber::DialogCancelled, u"Cancel was selected"_s);
    return m_printer->printRange() == QPrinter::Selection ? PrintedPart::Selection : PrintedPart::All;
}

void frmPrint::Print(const StyledText &text)
{
    PrintOn(*m_printer, text, m_title, m_progress);
}

} // namespace zelvane
