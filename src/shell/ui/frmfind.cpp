// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/ui/frmfind.h"

#include "platform/ui/textcontrol.h"
#include "shell/command.h"
#include "shell/findkeys.h"
#include "shell/ui/commands.h"
#include "shell/ui/form.h"
#include "shell/ui/menutable.h"
#include "shell/ui/screenplace.h"

#include <optional>
#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QKeySequence>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QShowEvent>
#include <QVBoxLayout>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

namespace
{

constexpr int FieldWidth = 28; ///< of the text fields, in characters

} // namespace

frmFind::frmFind(EditorContext &editor, TextControl &text, Commands &commands, bool replace, QWidget *parent)
    : QDialog(parent),
      m_editor(editor),
      m_text(text),
      m_commands(commands),
      txtFind(NewTypingList(this, u"txtFind"_s)),
      txtReplace(Named(new QLineEdit(this), u"txtReplace"_s, u"Text to put in its place"_s)),
      chkWholeWords(Named(new QCheckBox(u"Match &whole words"_s, this), u"chkWholeWords"_s)),
      chkCase(Named(new QCheckBox(u"Match &case"_s, this), u"chkCase"_s)),
      chkWrap(Named(new QCheckBox(u"&Wrap searches"_s, this), u"chkWrap"_s)),
      chkRegularExpression(Named(new QCheckBox(u"Regular e&xpression"_s, this), u"chkRegularExpression"_s)),
      fraScope(Named(new QGroupBox(u"Scope:"_s, this), u"fraScope"_s)),
      optScope{Named(new QRadioButton(u"&Selected text"_s, fraScope), u"optScope_0"_s),
               Named(new QRadioButton(u"Entire &document"_s, fraScope), u"optScope_1"_s)},
      bFind(Named(new QPushButton(u"&Find next"_s, this), u"bFind"_s)),
      bReplace(Named(new QPushButton(u"&Replace..."_s, this), u"bReplace"_s)),
      bReplaceAll(Named(new QPushButton(u"Replace &All"_s, this), u"bReplaceAll"_s)),
      bClose(Named(new QPushButton(u"Close"_s, this), u"bClose"_s))
{
    setObjectName(u"frmFind"_s);
    setAttribute(Qt::WA_DeleteOnClose);
    setModal(false);
    LayOut();
    Connect();
    SetFindMode(replace);
    txtFind->setFocus();
    m_commands.Guard([this] { Load(); });
}

void frmFind::LayOut()
{
    txtFind->setAccessibleName(u"Text to find"_s);
    chkRegularExpression->setVisible(m_editor.settings.Flag(Keys::RegularExpressions));
    chkRegularExpression->setToolTip(
        u"The text is a pattern; in what replaces it, \\1 is its first group and \\0 all that was found."_s);
    txtFind->setMinimumContentsLength(FieldWidth);
    Fill(*fraScope, {optScope[0], optScope[1]});
    TabToTheChosen({optScope[0], optScope[1]});
    auto *options = new QHBoxLayout;
    options->addLayout(Column({chkWholeWords, chkCase, chkWrap, chkRegularExpression}));
    options->addWidget(fraScope);
    options->addStretch();

    FormGrid fields;
    fields.Add({.caption = u"Fi&nd what:"_s, .field = txtFind, .labelName = u"lblFind"_s});
    lblReplace =
        fields.Add({.caption = u"Re&place with:"_s, .field = txtReplace, .labelName = u"lblReplace"_s});
    fields.AddAcross(options);
    fields.AddStretch();

    auto *all = new QHBoxLayout(this);
    all->addLayout(fields.Layout(), 1);
    all->addLayout(Column({bFind, bReplace, bReplaceAll, bClose}));
    SetEnterAndEscape(*this, bFind, bClose);
}

void frmFind::Connect()
{
    connect(optScope[0], &QRadioButton::toggled, this, &frmFind::EnableButtons);
    connect(bFind, &QPushButton::clicked, this, &frmFind::Find);
    connect(bReplace, &QPushButton::clicked, this, &frmFind::Replace);
    connect(bReplaceAll, &QPushButton::clicked, this, &frmFind::ReplaceEverything);
}

void frmFind::Load()
{
    ShowRecentStrings();
    const FindFields fields = OpeningFindFields(m_editor);
    OfferToFind(fields.find);
    txtReplace->setText(fields.replace);
    chkWholeWords->setChecked(fields.wholeWords);
    chkCase->setChecked(fields.matchCase);
    chkWrap->setChecked(fields.wrap);
    chkRegularExpression->setChecked(fields.regularExpression.value_or(false));
    optScope[int(fields.scope)]->setChecked(true);
    EnableButtons();
    RestorePlace(*this, m_editor.settings, Keys::FindX, Keys::FindY);
}

void frmFind::FollowSettings()
{
    const bool offered = m_editor.settings.Flag(Keys::RegularExpressions);
    if (offered == !chkRegularExpression->isHidden())
        return;
    chkRegularExpression->setVisible(offered);
    FitHeight();
}

void frmFind::OfferToFind(const QString &text)
{
    txtFind->setEditText(text);
    txtFind->lineEdit()->selectAll();
}

void frmFind::StartAgain(bool replace)
{
    SetFindMode(replace);
    txtFind->setFocus();
    m_commands.Guard([this] {
        const SelectedForFind selected = WhatIsSelected(m_editor.text);
        OfferToFind(selected.text.isEmpty() ? txtFind->currentText() : selected.text);
        if (selected.severalLines)
            optScope[int(FindScope::SelectedText)]->setChecked(true);
    });
}

void frmFind::ShowRecentStrings()
{
    const QStringList strings = FindStringsOffered(m_editor.settings);
    QStringList shown;
    for (int i = 0; i < txtFind->count(); ++i)
        shown.append(txtFind->itemText(i));
    if (shown == strings)
        return;
    QLineEdit &edit = *txtFind->lineEdit();
    const QString text = edit.text();
    const int start = edit.selectionStart();
    const int length = int(edit.selectedText().size());
    txtFind->clear();
    txtFind->addItems(strings);
    txtFind->setCurrentIndex(int(strings.indexOf(text)));
    txtFind->setEditText(text);
    if (length > 0)
        edit.setSelection(start, length);
}

FindFields frmFind::Fields() const
{
    const bool selectedText = m_replaceMode && optScope[0]->isChecked();
    return {.find = txtFind->currentText(),
            .replace = txtReplace->text(),
            .wholeWords = chkWholeWords->isChecked(),
            .matchCase = chkCase->isChecked(),
            .wrap = chkWrap->isChecked(),
            .regularExpression = chkRegularExpression->isHidden()
                                     ? std::nullopt
                                     : std::optional(chkRegularExpression->isChecked()),
            .scope = selectedText ? FindScope::SelectedText : FindScope::EntireDocument,
            .emptyHit = m_emptyHit};
}

void frmFind::SetFindMode(bool replace)
{
    m_replaceMode = replace;
    for (QWidget *control : std::initializer_list<QWidget *>{txtReplace, lblReplace, bReplaceAll, fraScope})
        control->setVisible(replace);
    setWindowTitle(replace ? u"Replace"_s : u"Find"_s);
    bReplace->setText(replace ? u"&Replace"_s : u"&Replace..."_s);
    EnableButtons();
    FitHeight();
}

void frmFind::FitHeight()
{
    layout()->activate();
    resize(width(), sizeHint().height());
    KeepOnScreen(*this);
}

void frmFind::EnableButtons()
{
    // Where the scope cannot be seen it cannot be changed either: it holds in Replace mode only.
    const bool byStep = !m_replaceMode || !optScope[0]->isChecked();
    bFind->setEnabled(byStep);
    bReplace->setEnabled(byStep);
}

void frmFind::Find()
{
    Step(&FindNext);
}

void frmFind::Replace()
{
    if (!m_replaceMode) {
        SetFindMode(true);
        return;
    }
    Step(&ReplaceNext);
}

void frmFind::Step(bool (*step)(EditorContext &, const FindFields &))
{
    m_commands.Guard([this, step] {
        const FindFields fields = Fields();
        m_emptyHit.reset();
        if (step(m_editor, fields) && m_text.Selection().IsEmpty())
            m_emptyHit = m_text.CaretOffset();
        ShowRecentStrings();
    });
    UncoverSelection();
}

void frmFind::ReplaceEverything()
{
    m_commands.Guard([this] {
        // Hiding moves the focus of the main window on; it has to come back to the text.
        const bool focused = m_text.window()->focusWidget() == &m_text;
        ReplaceAll(m_editor, Fields(), [this, focused](bool shown) {
            m_text.setVisible(shown);
            if (shown && focused)
                m_text.setFocus();
        });
        ShowRecentStrings();
    });
}

void frmFind::UncoverSelection()
{
    const TextSpan selection = m_text.Selection();
    MoveOff(*this, m_text.RangeOnScreen(selection.start, selection.end));
}

void frmFind::showEvent(QShowEvent *event)
{
    QDialog::showEvent(event); // finds a place over the window, not counting a frame that is still to come
    if (!event->spontaneous())
        KeepOnScreen(*this);
}

void frmFind::keyPressEvent(QKeyEvent *event)
{
    const auto isKeyOf = [event](Command command) {
        return KeySequences(command).contains(QKeySequence(event->keyCombination()));
    };
    // The keys of the menu rows reach the main window only.
    if (isKeyOf(Cmd::mnuFindAgain)) {
        if (bFind->isEnabled())
            Find();
    } else if (isKeyOf(Cmd::mnuFind)) {
        StartAgain(false);
    } else if (isKeyOf(Cmd::mnuReplace)) {
        StartAgain(true);
    } else {
        QDialog::keyPressEvent(event);
    }
}

void frmFind::done(int result)
{
    m_commands.Guard([this] { SavePlace(*this, m_editor.settings, Keys::FindX, Keys::FindY); });
    QDialog::done(result);
}

} // namespace zelvane
