// SPDX-License-Identifier: GPL-3.0-or-later
#include "texttools/ui/frmnewinclude.h"

#include "shell/documentkind.h"
#include "shell/editorcontext.h"
#include "shell/splitpath.h"
#include "shell/ui/form.h"
#include "texttools/inserts.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalBlocker>
#include <QStringList>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

namespace
{

constexpr int FieldWidth = 40; ///< characters

} // namespace

frmNewInclude::frmNewInclude(EditorContext &editor, const DocumentSteps &steps, QWidget *parent)
    : InsertDialog(editor, steps, parent, u"frmNewInclude"_s, u"#include Statement"_s),
      m_folder(SplitPath(PathPart::Folder, editor.document.CurrentFile)),
      txtFile(Named(new QLineEdit(this), u"txtFile"_s)),
      bFile(Named(new QPushButton(u"Browse..."_s, this), u"bFile"_s)),
      chkQualified(Named(new QCheckBox(u"Fully &qualified path"_s, this), u"chkQualified"_s))
{
    txtFile->setMinimumWidth(CharacterWidth(*this, FieldWidth));
    connect(txtFile, &QLineEdit::textChanged, this, &frmNewInclude::ShowName);
    connect(chkQualified, &QCheckBox::toggled, this, &frmNewInclude::ShowName);
    connect(bFile, &QPushButton::clicked, this, &frmNewInclude::Browse);

    FormGrid form;
    form.Add({.caption = u"&File:"_s,
              .field = txtFile,
              .hint = u"File to be included. (#include \"filename\")"_s,
              .button = bFile});
    form.AddUnder(chkQualified);
    LayOut(form.Layout());
}

void frmNewInclude::Browse()
{
    const auto extensions = [this](FileKind kind) { return KindExtensions(m_editor.settings, kind); };
    const QStringList orchestra = extensions(FileKind::Orchestra);
    const QStringList score = extensions(FileKind::Score);
    const QStringList unified = extensions(FileKind::Unified);
    PickFile(m_editor.desktop,
             {.filters = {{u"All Csound files"_s, ExtensionPatterns(orchestra + score + unified)},
                          {u"Orchestra files"_s, ExtensionPatterns(orchestra)},
                          {u"Score files"_s, ExtensionPatterns(score)},
                          {u"Unified Format files"_s, ExtensionPatterns(unified)}},
              .folder = m_folder},
             *txtFile);
}

void frmNewInclude::ShowName()
{
    const QString typed = txtFile->text();
    const QString name = IncludeName(typed, m_folder, chkQualified->isChecked());
    if (name == typed)
        return;
    // The caret stays before what it stood before.
    const qsizetype behind = typed.size() - txtFile->cursorPosition();
    const QSignalBlocker quiet(txtFile);
    txtFile->setText(name);
    txtFile->setCursorPosition(int(qMax<qsizetype>(0, name.size() - behind)));
}

void frmNewInclude::Insert()
{
    if (txtFile->text().isEmpty())
        Refuse(u"Specify a File to include or press Cancel."_s, txtFile);
    else
        InsertAndClose(IncludeText(txtFile->text()));
}

} // namespace zelvane
