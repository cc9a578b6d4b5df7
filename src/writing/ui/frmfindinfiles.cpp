// SPDX-License-Identifier: GPL-3.0-or-later
#include "writing/ui/frmfindinfiles.h"

#include "platform/desktop.h"
#include "platform/textbuffer.h"
#include "platform/ui/textcontrol.h"
#include "platform/ui/withinscreen.h"
#include "shell/documentview.h"
#include "shell/editorcontext.h"
#include "shell/findreplace.h"
#include "shell/settings.h"
#include "shell/ui/commands.h"
#include "shell/ui/form.h"
#include "shell/ui/leftdoubleclick.h"
#include "shell/ui/screenplace.h"
#include "writing/findinfileskeys.h"
#include "writing/ui/foundmodel.h"

#include <QCheckBox>
#include <QComboBox>
#include <QEvent>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QItemSelectionModel>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMetaObject>
#include <QModelIndex>
#include <QPushButton>
#include <QRect>
#include <QShowEvent>
#include <QTreeView>
#include <QVBoxLayout>
#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

namespace
{

// Widths in characters.
constexpr int FieldWidth = 24; ///< at least
constexpr int FileWidth = 36;
constexpr int LineWidth = 8;
constexpr int ListWidth = 100;

constexpr int ListRows = 14; ///< that are seen at first

} // namespace

frmFindInFiles::frmFindInFiles(const WindowContext &context)
    : QDialog(context.window),
      m_context(context),
      m_model(new FoundModel(this)),
      cmbFileText(NewTypingList(this, u"cmbFileText"_s)),
      txtSearchFolder(Named(new QLineEdit(this), u"txtSearchFolder"_s)),
      bSearchFolder(Named(new QPushButton(u"&Browse..."_s, this), u"bSearchFolder"_s)),
      txtSearchPatterns(Named(new QLineEdit(this), u"txtSearchPatterns"_s)),
      chkSearchSubFolders(Named(new QCheckBox(u"S&ub-folders"_s, this), u"chkSearchSubFolders"_s)),
      chkSearchWords(Named(new QCheckBox(u"Match &whole words"_s, this), u"chkSearchWords"_s)),
      chkSearchCase(Named(new QCheckBox(u"Match &case"_s, this), u"chkSearchCase"_s)),
      chkSearchExpression(Named(new QCheckBox(u"Regular e&xpression"_s, this), u"chkSearchExpression"_s)),
      lvwFound(Named(new QTreeView(this), u"lvwFound"_s, u"Found lines"_s)),
      lblFound(Named(new QLabel(this), u"lblFound"_s)),
      bSearch(Named(new QPushButton(u"&Find"_s, this), u"bSearch"_s)),
      bStopSearch(Named(new QPushButton(u"&Stop"_s, this), u"bStopSearch"_s)),
      bOpenFound(Named(new QPushButton(u"&Open"_s, this), u"bOpenFound"_s)),
      bCloseSearch(Named(new QPushButton(u"Close"_s, this), u"bCloseSearch"_s)),
      m_search([this] { QMetaObject::invokeMethod(this, &frmFindInFiles::TakeNews, Qt::QueuedConnection); })
{
    setObjectName(u"frmFindInFiles"_s);
    setWindowTitle(u"Find in Files"_s);
    setAttribute(Qt::WA_DeleteOnClose);
    setModal(false);
    LayOut();
    Connect();
    EnableButtons();
    cmbFileText->setFocus();
    m_context.commands.Guard([this] { Load(); });
}

void frmFindInFiles::LayOut()
{
    cmbFileText->setMinimumContentsLength(FieldWidth);
    lvwFound->setModel(m_model);
    lvwFound->setRootIsDecorated(false);
    lvwFound->setUniformRowHeights(true);
    lvwFound->setAllColumnsShowFocus(true);
    lvwFound->header()->setStretchLastSection(true);
    lvwFound->setColumnWidth(FoundModel::File, CharacterWidth(*lvwFound, FileWidth));
    lvwFound->setColumnWidth(FoundModel::Line, CharacterWidth(*lvwFound, LineWidth));
    OnlyLeftDoubleClicks(*lvwFound);
    lblFound->setWordWrap(true);
    lblFound->setTextFormat(Qt::PlainText);

    FormGrid fields;
    fields.Add({.caption = u"Fi&nd what:"_s, .field = cmbFileText, .labelName = u"lblFileText"_s});
    fields.Add({.caption = u"Fo&lder:"_s,
                .field = txtSearchFolder,
                .button = bSearchFolder,
                .labelName = u"lblSearchFolder"_s});
    fields.Add({.caption = u"Name &patterns:"_s,
                .field = txtSearchPatterns,
                .hint = u"Such as *.csd *.orc. Without a pattern all files are searched."_s,
                .labelName = u"lblSearchPatterns"_s});
    // In one line they would be wider than a small screen at twice the size.
    auto *boxes = new QGridLayout;
    boxes->addWidget(chkSearchSubFolders, 0, 0);
    boxes->addWidget(chkSearchWords, 0, 1);
    boxes->addWidget(chkSearchCase, 1, 0);
    boxes->addWidget(chkSearchExpression, 1, 1);
    boxes->setColumnStretch(2, 1);
    fields.AddUnder(boxes);

    auto *top = new QHBoxLayout;
    top->addLayout(fields.Layout(), 1);
    top->addLayout(Column({bSearch, bStopSearch, bOpenFound, bCloseSearch}));
    auto *all = new QVBoxLayout(this);
    all->addLayout(top);
    all->addWidget(Named(LabelFor(lvwFound, u"&Results:"_s), u"lblResults"_s));
    all->addWidget(lvwFound, 1);
    all->addWidget(lblFound);
    SetTabOrder({cmbFileText, txtSearchFolder, bSearchFolder, txtSearchPatterns, chkSearchSubFolders,
                 chkSearchWords, chkSearchCase, chkSearchExpression, lvwFound, bSearch, bStopSearch,
                 bOpenFound, bCloseSearch});
    SetEnterAndEscape(*this, bSearch, bCloseSearch);
}

void frmFindInFiles::Connect()
{
    lvwFound->installEventFilter(this);
    connect(bSearchFolder, &QPushButton::clicked, this, [this] {
        m_context.commands.Guard([this] {
            PickFolder(m_context.editor.desktop, u"Search in this folder"_s, txtSearchFolder->text(),
                       *txtSearchFolder);
        });
    });
    connect(bSearch, &QPushButton::clicked, this, &frmFindInFiles::Search);
    connect(bStopSearch, &QPushButton::clicked, this, &frmFindInFiles::StopSearch);
    connect(bOpenFound, &QPushButton::clicked, this, &frmFindInFiles::OpenChosen);
    connect(lvwFound, &QAbstractItemView::doubleClicked, this, &frmFindInFiles::OpenChosen);
    connect(lvwFound->selectionModel(), &QItemSelectionModel::currentChanged, this,
            &frmFindInFiles::EnableButtons);
}

void frmFindInFiles::Load()
{
    const SettingsStore &settings = m_context.editor.settings;
    ShowRecentTexts();
    const FileSearchFields fields = OpeningFileSearch(m_context.editor);
    OfferToFind(fields.text);
    ShowFromStart(*txtSearchFolder, fields.folder);
    ShowFromStart(*txtSearchPatterns, fields.patterns);
    chkSearchSubFolders->setChecked(fields.subFolders);
    chkSearchWords->setChecked(fields.wholeWords);
    chkSearchCase->setChecked(fields.matchCase);
    chkSearchExpression->setChecked(fields.regularExpression);

    const int dpi = logicalDpiX();
    const QSize usual(CharacterWidth(*this, ListWidth),
                      sizeHint().height() + fontMetrics().height() * (ListRows / 2));
    const QSize size(FromTwips(settings.Number(Keys::FindInFilesWidth, ToTwips(usual.width(), dpi)), dpi),
                     FromTwips(settings.Number(Keys::FindInFilesHeight, ToTwips(usual.height(), dpi)), dpi));
    resize(WithinScreen(*this, size));
    RestorePlace(*this, settings, Keys::FindInFilesX, Keys::FindInFilesY);
}

void frmFindInFiles::OfferToFind(const QString &text)
{
    cmbFileText->setEditText(text);
    cmbFileText->lineEdit()->selectAll();
}

void frmFindInFiles::StartAgain()
{
    cmbFileText->setFocus();
    m_context.commands.Guard([this] {
        const QString selected = WhatIsSelected(m_context.editor.text).text;
        OfferToFind(selected.isEmpty() ? cmbFileText->currentText() : selected);
    });
}

void frmFindInFiles::ShowRecentTexts()
{
    const QString text = cmbFileText->currentText();
    cmbFileText->clear();
    cmbFileText->addItems(FileSearchTexts(m_context.editor.settings));
    cmbFileText->setEditText(text);
}

FileSearchFields frmFindInFiles::Fields() const
{
    return {.text = cmbFileText->currentText(),
            .folder = txtSearchFolder->text(),
            .patterns = txtSearchPatterns->text(),
            .subFolders = chkSearchSubFolders->isChecked(),
            .wholeWords = chkSearchWords->isChecked(),
            .matchCase = chkSearchCase->isChecked(),
            .regularExpression = chkSearchExpression->isChecked()};
}

void frmFindInFiles::Search()
{
    m_context.commands.Guard([this] {
        const FileSearchFields fields = Fields();
        const QString error = FileSearchError(fields);
        if (!error.isEmpty()) {
            m_context.editor.desktop.MessageBox({.text = error, .icon = BoxIcon::Warning});
            return;
        }
        const FileSearch search = FileSearchOf(fields);
        m_model->Begin(search.folder);
        lblFound->setText(u"Searching..."_s);
        m_searching = true;
        m_stopped = false;
        EnableButtons();
        m_search.Start(search);
        // Last: a store that cannot be written keeps nobody from searching.
        StoreFileSearch(m_context.editor.settings, fields);
        ShowRecentTexts();
    });
}

void frmFindInFiles::StopSearch()
{
    m_stopped = m_searching;
    m_search.Stop();
}

void frmFindInFiles::TakeNews()
{
    BackgroundSearch::News news = m_search.Take();
    const bool first = m_model->rowCount() == 0;
    m_model->Append(std::move(news.lines));
    if (first && m_model->rowCount() > 0)
        lvwFound->setCurrentIndex(m_model->index(0, 0));
    m_searching = !news.ended;
    const QString counts = FileSearchText(news.counts);
    if (m_searching)
        lblFound->setText(u"Searching... "_s + counts);
    else if (news.counts == SearchCounts() && !m_stopped)
        lblFound->setText(u"No file there has such a name."_s);
    else
        lblFound->setText(m_stopped ? u"Stopped. "_s + counts : counts);
    EnableButtons();
}

void frmFindInFiles::OpenChosen()
{
    const QModelIndex row = lvwFound->currentIndex();
    if (!row.isValid())
        return;
    m_context.commands.Guard([this, found = m_model->At(row)] {
        if (!OpenFoundLine(m_context.editor, found))
            return;
        const TextSpan hit = m_context.text.Selection();
        MoveOff(*this, m_context.text.RangeOnScreen(hit.start, hit.end));
        m_context.window->activateWindow();
        m_context.view.FocusText();
    });
}

void frmFindInFiles::EnableButtons()
{
    bStopSearch->setEnabled(m_searching);
    bOpenFound->setEnabled(lvwFound->currentIndex().isValid());
}

bool frmFindInFiles::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == lvwFound && event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent *>(event)->key();
        if (key == Qt::Key_Return || key == Qt::Key_Enter) {
            OpenChosen();
            return true;
        }
    }
    return QDialog::eventFilter(watched, event);
}

void frmFindInFiles::showEvent(QShowEvent *event)
{
    QDialog::showEvent(event);
    if (!event->spontaneous())
        KeepOnScreen(*this);
}

void frmFindInFiles::done(int result)
{
    m_search.Stop();
    m_context.commands.Guard([this] {
        SettingsStore &settings = m_context.editor.settings;
        settings.InOneStep([&] {
            SavePlace(*this, settings, Keys::FindInFilesX, Keys::FindInFilesY);
            settings.SaveNumber(Keys::FindInFilesWidth, ToTwips(width(), logicalDpiX()));
            settings.SaveNumber(Keys::FindInFilesHeight, ToTwips(height(), logicalDpiX()));
        });
    });
    QDialog::done(result);
}

} // namespace zelvane
