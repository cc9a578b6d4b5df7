// SPDX-License-Identifier: GPL-3.0-or-later
#include "preferences/ui/frmoptions.h"

#include "platform/desktop.h"
#include "platform/fileinfo.h"
#include "platform/ui/textcontrol.h"
#include "preferences/fileassociations.h"
#include "preferences/preferences.h"
#include "preferences/ui/colourbutton.h"
#include "preferences/ui/namesakes.h"
#include "shell/editorkeys.h"
#include "shell/errorreport.h"
#include "shell/settings.h"
#include "shell/ui/appearance.h"
#include "shell/ui/form.h"
#include "shell/ui/plaintooltip.h"

#include <algorithm>
#include <initializer_list>
#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFont>
#include <QFontDatabase>
#include <QFontDialog>
#include <QFontMetrics>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QRadioButton>
#include <QShortcut>
#include <QStringList>
#include <QTabWidget>
#include <QVBoxLayout>
#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

namespace
{

constexpr int NumberWidth = 8;    ///< of the fields for numbers and short texts, in characters
constexpr int PathWidth = 44;     ///< of the fields for paths and lists, in characters
constexpr int VariableWidth = 64; ///< of an environment variable's line, in characters
constexpr int SampleWidth = 20;   ///< of the caption of a syntax element, in characters

QCheckBox *NewBox(const QString &key, const QString &caption, const QString &hint = {})
{
    auto *box = Named(new QCheckBox(caption), key);
    if (!hint.isEmpty()) {
        box->setToolTip(hint);
        box->setAccessibleDescription(hint);
    }
    return box;
}

QLineEdit *NewField(const QString &key, int characters)
{
    auto *field = Named(new QLineEdit, key);
    field->setMinimumWidth(CharacterWidth(*field, characters));
    SelectOnFocus(field);
    return field;
}

QPushButton *NewBrowseButton(const QString &name)
{
    return Named(new QPushButton(u"Browse..."_s), name);
}

/// The value of an environment variable; what is too long for the line loses its middle there.
QLabel *NewVariableLine(const QString &name, const QString &variable, const Desktop &desktop)
{
    const QString line = VariableLine(variable, desktop);
    auto *label = Named(new QLabel, name, line);
    label->setTextFormat(Qt::PlainText);
    label->setText(
        label->fontMetrics().elidedText(line, Qt::ElideMiddle, CharacterWidth(*label, VariableWidth)));
    label->setToolTip(PlainToolTip(line));
    return label;
}

/// With the name of its style: by itself the toolkit's picker does not find the upright style of every
/// family.
QFont FontOf(const TextFont &text)
{
    QFont font(text.family);
    font.setPointSizeF(text.points);
    font.setBold(text.bold);
    font.setItalic(text.italic);
    const QStringList styles = QFontDatabase::styles(text.family);
    const auto is = [&](const QString &style) {
        const QFont of = QFontDatabase::font(text.family, style, 1);
        return of.weight() == font.weight() && of.italic() == text.italic; // oblique ones too
    };
    if (const auto style = std::find_if(styles.begin(), styles.end(), is); style != styles.end())
        font.setStyleName(*style);
    return font;
}

/// What the user has changed of a font. The picker rounds what it shows, and knows no family that is not
/// there.
TextFont Changed(TextFont font, const QFont &shown, const QFont &picked)
{
    if (picked.family() != shown.family())
        font.family = picked.family();
    if (picked.pointSizeF() > 0 && picked.pointSizeF() != shown.pointSizeF())
        font.points = picked.pointSizeF();
    if (picked.bold() != shown.bold())
        font.bold = picked.bold();
    if (picked.italic() != shown.italic())
        font.italic = picked.italic();
    return font;
}

} // namespace

frmOptions::frmOptions(const OptionsContext &context, QWidget *parent)
    : QDialog(parent),
      m_context(context),
      m_keyed(context.settings),
      tbsOptions(Named(new QTabWidget(this), u"tbsOptions"_s)),
      cmdOK(Named(new QPushButton(u"OK"_s, this), u"cmdOK"_s)),
      cmdCancel(Named(new QPushButton(u"Cancel"_s, this), u"cmdCancel"_s)),
      cmdApply(Named(new QPushButton(u"&Apply"_s, this), u"cmdApply"_s))
{
    setObjectName(u"frmOptions"_s);
    setWindowTitle(ProgramCaption(u"Preferences"_s));
    const std::pair<QString, QWidget *> pages[] = {
        {u"Editor"_s, EditorPage()},     {u"Syntax colors"_s, SyntaxPage()},  {u"General"_s, GeneralPage()},
        {u"Programs"_s, ProgramsPage()}, {u"Extensions"_s, ExtensionsPage()}, {u"Writing"_s, WritingPage()}};
    for (const auto &[caption, content] : pages) {
        QWidget *page = ScrollPage(content);
        page->setObjectName(u"picOptions"_s + u'_' + QString::number(tbsOptions->count()));
        tbsOptions->addTab(page, caption);
    }
    LayOut();
    Connect();
    for (const auto &[key, button] :
         {std::pair(Keys::BackColor, bBackColor), std::pair(Keys::FontColor, bFontColor)})
        m_keyed.Bind(
            key, [button](quint32 colour) { button->SetColour(colour); },
            [button] { return button->Colour(); });
    BindNamesakes(*this, m_keyed);
    Guarded(m_context.desktop, [this] { Load(); });
    FitToScreen(*this);
    tbsOptions->setFocus();
}

// The pages

QWidget *frmOptions::EditorPage()
{
    auto *page = new QWidget;

    auto *colours = new QGroupBox(u"Colors and font"_s);
    SystemColors = NewBox(u"SystemColors"_s, u"Use &system colors"_s);
    bBackColor = Named(new ColourButton(u"Back Color"_s), u"bBackColor"_s);
    bFontColor = Named(new ColourButton(u"Font Color"_s), u"bFontColor"_s);
    bFont = Named(new QPushButton(u"Set &Font..."_s), u"bFont"_s);
    FixedPitchFonts = NewBox(u"FixedPitchFonts"_s, u"&Fixed Pitch Fonts"_s,
                             u"The list of fonts holds only those whose characters have one width."_s);
    FixedPitchFonts->setChecked(true);
    FormGrid look(colours);
    look.AddAcross(SystemColors);
    lblBackColor =
        look.Add({.caption = u"&Back Color:"_s, .field = bBackColor, .labelName = u"lblBackColor"_s});
    lblFontColor =
        look.Add({.caption = u"Fo&nt Color:"_s, .field = bFontColor, .labelName = u"lblFontColor"_s});
    look.AddAcross(bFont);
    look.AddAcross(FixedPitchFonts);
    look.AddStretch();

    auto *tabs = new QGroupBox(u"Tabs"_s);
    auto *insertSpaces = Named(new QRadioButton(u"&Insert spaces"_s), u"TabInsertSpaces"_s);
    auto *realTabs = Named(new QRadioButton(u"Keep &tabs"_s), u"RealTabs"_s);
    realTabs->setChecked(true);
    FormGrid stops(tabs);
    stops.AddAcross(insertSpaces);
    stops.AddAcross(realTabs);
    stops.Add({.caption = u"S&paces in a tab:"_s,
               .field = NewField(u"TabSpaces"_s, NumberWidth),
               .hint = u"How many spaces are worth one tab."_s});
    stops.Add({.caption = u"Tab si&ze:"_s,
               .field = NewField(u"TabSize"_s, NumberWidth),
               .hint = u"Distance of the tab stops in dialog units, a quarter of a character each; 0 is the "
                       "editor's own. Works from the next start on."_s});
    stops.AddStretch();
    TabToTheChosen({insertSpaces, realTabs});

    auto *lines = new QGroupBox(u"Line separation"_s);
    FormGrid separators(lines);
    separators.Add({.caption = u"Line &width:"_s,
                    .field = NewField(u"LineWidth"_s, NumberWidth),
                    .hint = u"How many characters a separator line has."_s});
    separators.Add({.caption = u"Style &1:"_s,
                    .field = NewField(u"LineStyle1"_s, NumberWidth),
                    .hint = u"What the first separator line of the Insert menu is made of."_s});
    separators.Add({.caption = u"Style &2:"_s,
                    .field = NewField(u"LineStyle2"_s, NumberWidth),
                    .hint = u"What the second separator line of the Insert menu is made of."_s});
    separators.AddStretch();

    auto *grid = new QGridLayout(page);
    grid->addWidget(colours, 0, 0);
    grid->addWidget(tabs, 0, 1);
    grid->addLayout(
        Column({NewBox(u"DragAndDrop"_s, u"&Drag-and-drop text editing"_s),
                NewBox(u"SyntaxHighlight"_s, u"Syntax &highlight"_s, u"Works only at file opening."_s),
                NewBox(u"CppComments"_s, u"&Use C style comments"_s)}),
        1, 0);
    grid->addWidget(lines, 1, 1);
    grid->setColumnStretch(0, 1);
    grid->setColumnStretch(1, 1);
    grid->setRowStretch(2, 1);
    return page;
}

QWidget *frmOptions::SyntaxPage()
{
    auto *page = new QWidget;
    lstSyntaxElements = Named(new QListWidget, u"lstSyntaxElements"_s);
    lstSyntaxElements->addItems(SyntaxElements());
    lblSample = Named(new QLabel(u"Sample"_s), u"lblSample"_s);
    lblSample->setMinimumWidth(CharacterWidth(*lblSample, SampleWidth));
    // It has never done anything: these colours are set in the settings file.
    auto *colour = Named(new QPushButton(u"Color..."_s), u"bColor"_s);

    auto *grid = new QGridLayout(page);
    grid->addWidget(LabelFor(lstSyntaxElements, u"Syntax &elements:"_s), 0, 0, 1, 2);
    grid->addWidget(lstSyntaxElements, 1, 0);
    grid->addLayout(Column({lblSample, colour}), 1, 1);
    grid->setColumnStretch(0, 1);
    return page;
}

QWidget *frmOptions::GeneralPage()
{
    auto *page = new QWidget;
    auto *display = new QGroupBox(u"Display"_s);
    display->setLayout(
        Column({NewBox(u"SingleSelection"_s, u"&Tree single selection"_s),
                NewBox(u"ExpandBrowse"_s, u"&Expand Code Outline"_s),
                NewBox(u"HotTracking"_s, u"&Hot tracking"_s), NewBox(u"Splash"_s, u"&Splash screen"_s),
                NewBox(u"BandLabels"_s, u"&Band labels"_s), NewBox(u"FlatButtons"_s, u"&Flat buttons"_s)}));

    auto *general = new QGroupBox(u"General"_s);
    general->setLayout(
        Column({NewBox(u"DeleteTempFiles"_s, u"&Delete temp files at startup"_s),
                NewBox(u"RememberCaret"_s, u"&Remember caret position"_s),
                NewBox(u"SaveOnSwitch"_s, u"Save on &Orc/Sco switch"_s),
                NewBox(u"ConfirmPresets"_s, u"&Confirm Preset"_s),
                NewBox(u"OverwritePrompt"_s, u"&Warn before overwrite"_s),
                NewBox(u"MinimizeOnPresets"_s, u"&Minimize before Preset"_s),
                NewBox(u"MultipleInstances"_s, u"Allow multiple &instances"_s),
                NewBox(u"SliderNegative"_s, u"&Negative numbers on Slider"_s),
                NewBox(u"SafetyCopy"_s, u"&Keep a copy of unsaved text"_s,
                       u"What was not saved is offered again after a crash or a power cut."_s)}));

    auto *frames = new QHBoxLayout;
    frames->addWidget(display, 1);
    frames->addWidget(general, 1);

    auto *startup = Named(new QComboBox, u"Startup"_s);
    startup->addItems(StartupTexts());
    BakPath = NewField(u"BakPath"_s, PathWidth);
    bBakPath = NewBrowseButton(u"bBakPath"_s);
    FormGrid form(page);
    form.AddAcross(frames);
    form.Add({.caption = u"At start&up:"_s, .field = startup});
    form.Add({.caption = u"Backu&p folder:"_s,
              .field = BakPath,
              .hint = u"Empty: the folder of the document."_s,
              .button = bBakPath});
    form.AddStretch();
    return page;
}

QWidget *frmOptions::ProgramsPage()
{
    auto *page = new QWidget;
    FormGrid form(page);
    AddTool(form, u"Csound"_s, u"&Csound:"_s, u"bCsound"_s, ProgramRequest);
    AddTool(form, u"Csound2"_s, u"Csound #&2:"_s, u"bCsound2"_s, ProgramRequest);
    AddTool(form, u"Help"_s, u"&Help:"_s, u"bHelp"_s, HelpFileRequest);
    AddTool(form, u"Editor"_s, u"Sound &editor:"_s, u"bEditor"_s, ProgramRequest);
    AddTool(form, u"Player"_s, u"Sound &player:"_s, u"bPlayer"_s, ProgramRequest);

    auto *variables = new QGroupBox(u"Environment variables"_s);
    auto *lines = new QVBoxLayout(variables);
    lines->addWidget(NewVariableLine(u"lblSFDIR"_s, u"SFDIR"_s, m_context.desktop));
    lines->addWidget(NewVariableLine(u"lblSSDIR"_s, u"SSDIR"_s, m_context.desktop));
    lines->addWidget(NewVariableLine(u"lblSADIR"_s, u"SADIR"_s, m_context.desktop));
    lines->addWidget(NewVariableLine(u"lblINCDIR"_s, u"INCDIR"_s, m_context.desktop));
    form.AddAcross(variables);
    form.AddStretch();
    return page;
}

void frmOptions::AddTool(FormGrid &form, const QString &key, const QString &caption, const QString &button,
                         PathRequest request)
{
    QLineEdit *path = NewField(key, PathWidth);
    QPushButton *browse = NewBrowseButton(button);
    form.Add({.caption = caption, .field = path, .button = browse});
    Desktop &desktop = m_context.desktop;
    connect(path, &QLineEdit::textChanged, path, [path, &desktop](const QString &text) {
        path->setToolTip(PlainToolTip(FileInfoText(text, desktop)));
    });
    const QString title = path->accessibleName();
    connect(browse, &QPushButton::clicked, path,
            [path, request, title, &desktop] { PickFile(desktop, request(title, path->text()), *path); });
}

QWidget *frmOptions::ExtensionsPage()
{
    auto *page = new QWidget;
    auto *orchestra = NewField(u"OrchestraExtensions"_s, PathWidth);
    auto *score = NewField(u"ScoreExtensions"_s, PathWidth);
    auto *unified = NewField(u"UFFExtensions"_s, PathWidth);
    FormGrid form(page);
    form.Add({.caption = u"&Orchestra:"_s, .field = orchestra});
    form.Add({.caption = u"&Score:"_s, .field = score});
    form.Add({.caption = u"&Unified format:"_s, .field = unified});
    form.Add({.caption = u"Sou&nd:"_s, .field = NewField(u"SoundExtensions"_s, PathWidth)});
    form.Add({.caption = u"&MIDI:"_s, .field = NewField(u"MIDIExtensions"_s, PathWidth)});
    auto *note = Named(new QLabel, u"lblExtensions"_s);
    note->setTextFormat(Qt::PlainText);
    note->setWordWrap(true);
    note->setText(ExtensionsNote());
    form.AddAcross(note);
    auto *associate = Named(new QPushButton(u"Associate e&xtensions..."_s), u"bAssociate"_s);
    connect(associate, &QPushButton::clicked, this, [this, orchestra, score, unified] {
        AssociateExtensions({orchestra->text(), score->text(), unified->text()}, m_context.desktop,
                            m_context.fileTypes);
    });
    form.AddAcross(Line({associate}));
    form.AddStretch();
    return page;
}

QWidget *frmOptions::WritingPage()
{
    auto *page = new QWidget;
    auto *completion = NewBox(u"Completion"_s, u"Complete &words"_s,
                              u"Ctrl+Space lists opcodes and names of the text that begin like the word."_s);
    // The list that it brings up is the other one's.
    auto *byItself = NewBox(u"AutoComplete"_s, u"List &them after three letters"_s,
                            u"The list of words comes up by itself."_s);
    byItself->setEnabled(completion->isChecked());
    connect(completion, &QCheckBox::toggled, byItself, &QWidget::setEnabled);
    auto *typing = new QGroupBox(u"While you type"_s);
    typing->setLayout(Column(
        {NewBox(u"LiveColours"_s, u"Color the text as it is t&yped"_s,
                u"Without a refresh, where Syntax highlight is on."_s),
         completion, byItself,
         NewBox(u"ArgumentHint"_s, u"&Hints on arguments"_s,
                u"A tip shows what the opcode at the caret takes; Ctrl+Shift+Space brings it back."_s),
         NewBox(u"AutoIndent"_s, u"&Indent by itself"_s,
                u"A new line begins below the last one, deeper in an instrument, a condition or a loop."_s),
         NewBox(u"MoveLines"_s, u"&Duplicate and move lines"_s, u"Commands of the menu Extras."_s)}));

    auto *text = new QGroupBox(u"In the text"_s);
    text->setLayout(
        Column({NewBox(u"LineNumbers"_s, u"&Line numbers"_s),
                NewBox(u"CurrentLine"_s, u"Mark the line of the &caret"_s),
                NewBox(u"BracketMatch"_s, u"Mark matching &brackets"_s, u"Quotes and tags too."_s),
                NewBox(u"SameWord"_s, u"Mark the same word &everywhere"_s,
                       u"Wherever the word at the caret stands in sight."_s),
                NewBox(u"Folding"_s, u"&Fold parts of the text"_s,
                       u"Instruments, opcodes, conditions, loops, tags and comments can be shut."_s),
                NewBox(u"Bookmarks"_s, u"Boo&kmarks"_s, u"Commands of the menu Extras."_s)}));

    auto *search = new QGroupBox(u"Search"_s);
    search->setLayout(
        Column({NewBox(u"FindInFiles"_s, u"Find in file&s"_s, u"A command of the menu Extras."_s),
                NewBox(u"RegularExpressions"_s, u"&Regular expressions"_s,
                       u"In Find and Replace: a box that makes the text a pattern."_s)}));

    auto *all = Named(new QPushButton(u"Turn all o&n"_s), u"bAllAids"_s);
    connect(all, &QPushButton::clicked, page, [page] {
        for (QCheckBox *box : page->findChildren<QCheckBox *>())
            box->setChecked(true);
    });

    auto *grid = new QGridLayout(page);
    grid->addWidget(typing, 0, 0);
    grid->addWidget(text, 0, 1);
    grid->addWidget(search, 1, 0);
    grid->addLayout(Line({all}), 2, 0, 1, 2);
    grid->setColumnStretch(0, 1);
    grid->setColumnStretch(1, 1);
    grid->setRowStretch(3, 1);
    return page;
}

void frmOptions::LayOut()
{
    auto *buttons = ButtonBox(*this, cmdOK, cmdCancel, [this] {
        if (Apply())
            accept();
    });
    buttons->addButton(cmdApply, QDialogButtonBox::ApplyRole);
    auto *all = new QVBoxLayout(this);
    all->addWidget(tbsOptions, 1);
    all->addWidget(buttons);
}

void frmOptions::Connect()
{
    connect(cmdApply, &QPushButton::clicked, this, [this] { Apply(); });
    connect(SystemColors, &QCheckBox::toggled, this, &frmOptions::EnableColours);
    connect(bFont, &QPushButton::clicked, this, &frmOptions::SetFont);
    // By themselves the pages take these keys only where no control does.
    connect(new QShortcut(Qt::CTRL | Qt::Key_Tab, this), &QShortcut::activated, this,
            [this] { StepPage(1); });
    connect(new QShortcut(Qt::CTRL | Qt::SHIFT | Qt::Key_Tab, this), &QShortcut::activated, this,
            [this] { StepPage(-1); });
    connect(lstSyntaxElements, &QListWidget::currentRowChanged, this, &frmOptions::ShowElement);
    connect(bBakPath, &QPushButton::clicked, this, [this] {
        PickFolder(m_context.desktop, u"Select the backup folder"_s, BakPath->text(), *BakPath);
    });
}

void frmOptions::StepPage(int step)
{
    const int pages = tbsOptions->count();
    tbsOptions->setCurrentIndex((tbsOptions->currentIndex() + step + pages) % pages);
}

// What the dialog does

void frmOptions::Load()
{
    m_keyed.Load();
    EnableColours();
}

bool frmOptions::Apply()
{
    return Guarded(m_context.desktop, [this] {
        m_keyed.Save();
        m_context.looks.ApplyAll();
    });
}

void frmOptions::EnableColours()
{
    const bool own = !SystemColors->isChecked();
    for (QWidget *control :
         std::initializer_list<QWidget *>{lblBackColor, bBackColor, lblFontColor, bFontColor})
        control->setEnabled(own);
}

void frmOptions::ShowElement(int row)
{
    QListWidgetItem *item = lstSyntaxElements->item(row);
    if (!item)
        return;
    item->setSelected(true); // the Tab key only goes to the first row
    lblSample->setText(item->text());
}

void frmOptions::SetFont()
{
    const TextFont before = m_context.text.CurrentFont();
    QFontDialog picker(this);
    picker.setWindowTitle(u"Font"_s);
    picker.setOption(QFontDialog::DontUseNativeDialog); // the desktop's own minds no restriction
    picker.setOption(QFontDialog::MonospacedFonts, FixedPitchFonts->isChecked());
    picker.setCurrentFont(FontOf(before)); // fills the list: before, the picker minds no option
    const QFont shown = picker.currentFont();
    if (picker.exec() == QDialog::Accepted)
        m_context.text.ApplyFont(Changed(before, shown, picker.selectedFont()));
}

} // namespace zelvane
