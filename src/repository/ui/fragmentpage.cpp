// SPDX-License-Identifier: GPL-3.0-or-later
#include "repository/ui/fragmentpage.h"

#include "repository/fragmenttext.h"
#include "repository/ui/panenote.h"
#include "shell/ui/form.h"
#include "shell/ui/tabstops.h"

#include <algorithm>
#include <QChar>
#include <QComboBox>
#include <QDir>
#include <QFileInfo>
#include <QFontDatabase>
#include <QFontMetricsF>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QScopedValueRollback>
#include <QTextDocument>
#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

namespace
{

constexpr int TabColumns = 8;

const char16_t *const Categories[] = {u"Function Tables", u"General",  u"Instruments", u"Opcodes",
                                      u"Macros",          u"Math",     u"MIDI",        u"Orchestra",
                                      u"Score",           u"Templates"};

/// A text as it was typed: the document's own plain text has blanks for no-break spaces.
QString TextOf(const QPlainTextEdit &field)
{
    return field.document()->toRawText().replace(QChar::ParagraphSeparator, u'\n');
}

void SetLines(QPlainTextEdit &field, int lines)
{
    field.setMinimumHeight(field.fontMetrics().lineSpacing() * lines);
}

} // namespace

// The controls are the window's first: the layout brings each to the page behind its label, which is the
// order that screen readers go by.
FragmentPage::FragmentPage(QWidget *window)
    : QWidget(window),
      txtCodeRes(Named(new QPlainTextEdit(window), u"txtCodeRes"_s)),
      lblCutCode(Named(new PaneNote(window), u"lblCutCode"_s)),
      txtAuthor(Named(new QLineEdit(window), u"txtAuthor"_s)),
      cmbCategory(NewTypingList(window, u"cmbCategory"_s)),
      txtComments(Named(new QPlainTextEdit(window), u"txtComments"_s)),
      lblFile(Named(new QLabel(window), u"lblFile"_s))
{
    txtCodeRes->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    txtCodeRes->setTabStopDistance(QFontMetricsF(txtCodeRes->font()).horizontalAdvance(u' ') * TabColumns);
    txtCodeRes->setLineWrapMode(QPlainTextEdit::NoWrap);
    SetLines(*txtCodeRes, CodeLines / 2);
    SetLines(*txtComments, CommentLines / 2);
    for (const char16_t *category : Categories)
        cmbCategory->addItem(QString::fromUtf16(category));
    LayOut();
    new TabStops(window, txtCodeRes);
    new TabStops(window, txtComments);
    Connect();
}

void FragmentPage::LayOut()
{
    auto *page = new QGridLayout(this);
    page->setContentsMargins({});
    page->setColumnStretch(1, 1);
    page->addWidget(LabelFor(txtCodeRes, u"C&ode:"_s), 0, 0, 1, 2);
    page->addWidget(txtCodeRes, 1, 0, 1, 2);
    page->setRowStretch(1, CodeLines);
    page->addWidget(lblCutCode, 2, 0, 1, 2);
    page->addWidget(LabelFor(txtAuthor, u"&Author:"_s), 3, 0);
    page->addWidget(txtAuthor, 3, 1);
    page->addWidget(LabelFor(cmbCategory, u"&Category:"_s), 4, 0);
    page->addWidget(cmbCategory, 4, 1);
    page->addWidget(LabelFor(txtComments, u"Co&mments:"_s), 5, 0, Qt::AlignTop);
    page->addWidget(txtComments, 5, 1);
    page->setRowStretch(5, CommentLines);
    page->addWidget(new QLabel(u"File:"_s, this), 6, 0);
    page->addWidget(lblFile, 6, 1);
}

void FragmentPage::Connect()
{
    const auto changed = [this] {
        if (!m_filling)
            Q_EMIT Edited();
    };
    connect(txtCodeRes, &QPlainTextEdit::textChanged, this, changed);
    connect(txtAuthor, &QLineEdit::textChanged, this, changed);
    connect(txtComments, &QPlainTextEdit::textChanged, this, changed);
    connect(cmbCategory, &QComboBox::editTextChanged, this, changed);
}

// The controls

QList<QWidget *> FragmentPage::Fields() const
{
    return {txtCodeRes, txtAuthor, cmbCategory, txtComments};
}

void FragmentPage::EnableFields(bool enabled)
{
    for (QWidget *field : Fields())
        field->setEnabled(enabled);
}

bool FragmentPage::HasKeyboard() const
{
    const QList<QWidget *> fields = Fields();
    return std::any_of(fields.begin(), fields.end(), [](const QWidget *field) { return field->hasFocus(); });
}

void FragmentPage::Fill(FragmentFields fields)
{
    const QScopedValueRollback filling(m_filling, true);
    txtCodeRes->setPlainText(fields.code);
    ShowFromStart(*txtAuthor, fields.author);
    txtComments->setPlainText(fields.comments);
    cmbCategory->setEditText(fields.category);
    m_filled = Shown();
    m_clean = m_read.fields = std::move(fields);
}

FragmentFields FragmentPage::Shown() const
{
    return {.code = Code(),
            .author = txtAuthor->text(),
            .comments = TextOf(*txtComments),
            .category = cmbCategory->currentText()};
}

// What is shown

void FragmentPage::ShowNothing()
{
    m_read = {};
    Fill({});
    lblFile->clear();
    lblCutCode->Tell({});
}

void FragmentPage::ShowStored(StoredFragment read, const QString &file)
{
    m_read = std::move(read);
    Fill(m_read.fields);
    lblFile->setText(QFileInfo(QDir::fromNativeSeparators(file)).fileName());
    lblCutCode->Tell(
        m_read.cut ? u"The fragment is longer than %1 characters: not all of it is shown."_s.arg(ReadLimit)
                   : QString());
}

void FragmentPage::ShowNew(const FragmentFields &fields)
{
    m_read = {};
    Fill(fields);
    lblFile->clear();
}

void FragmentPage::ShowUnwritten(const FragmentFields &fields)
{
    Fill(fields);
    m_clean = {};
}

// What it is worth

FragmentFields FragmentPage::Page() const
{
    // What was not touched stays as it was read: a field may not hold every character.
    const auto field = [](const QString &now, const QString &filled, const QString &read) {
        return now == filled ? read : now;
    };
    const FragmentFields shown = Shown();
    return {.code = field(shown.code, m_filled.code, m_read.fields.code),
            .author = field(shown.author, m_filled.author, m_read.fields.author),
            .comments = field(shown.comments, m_filled.comments, m_read.fields.comments),
            .category = field(shown.category, m_filled.category, m_read.fields.category)};
}

QString FragmentPage::Code() const
{
    return TextOf(*txtCodeRes);
}

bool FragmentPage::IsUnsaved() const
{
    return Page() != m_clean;
}

bool FragmentPage::IsUnsavedBesideCode() const
{
    FragmentFields page = Page();
    page.code = m_clean.code;
    return page != m_clean;
}

void FragmentPage::MarkSaved()
{
    m_clean = Page();
}

void FragmentPage::TakeMoved(const StoredFragment &now)
{
    m_read.entries = now.entries;
    m_read.cut = now.cut;
}

bool FragmentPage::TakeSaved(StoredFragment now)
{
    FragmentFields read = now.fields;
    for (QString *text : {&read.code, &read.comments})
        text->replace(u"\r\n"_s, u"\n"_s);
    if (read != Shown())
        return false;
    m_read = std::move(now);
    m_filled = Shown();
    m_clean = m_read.fields;
    return true;
}

} // namespace zelvane
