// SPDX-License-Identifier: GPL-3.0-or-later
#include "texttools/ui/frmheader.h"

#include "platform/numbers.h"
#include "shell/editorcontext.h"
#include "shell/settings.h"
#include "shell/ui/form.h"
#include "shell/ui/spinner.h"
#include "texttools/insertkeys.h"
#include "texttools/inserts.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QLineEdit>
#include <QString>
#include <QStringList>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

namespace
{

constexpr SpinRange Channels{.least = 1, .most = 999};

qint32 RateOf(const QString &text)
{
    return ToInteger<qint32>(Val(text));
}

} // namespace

frmHeader::frmHeader(EditorContext &editor, const DocumentSteps &steps, QWidget *parent)
    : InsertDialog(editor, steps, parent, u"frmHeader"_s, u"Orchestra Header"_s),
      cmbSr(NewTypingList(this, u"cmbSr"_s)),
      txtKR(Named(new QLineEdit(Kept(Keys::HeaderkR), this), u"txtKR"_s)),
      txtChannels(Named(new QLineEdit(Kept(Keys::HeaderChannels), this), u"txtChannels"_s)),
      chkStartofFile(Named(new QCheckBox(u"Insert at start of file"_s, this), u"chkStartofFile"_s))
{
    cmbSr->addItems({u"8000"_s, u"11025"_s, u"16000"_s, u"22050"_s, u"32000"_s, u"44100"_s, u"48000"_s,
                     u"88200"_s, u"96000"_s});
    // By its row too, from which the arrow keys go on.
    cmbSr->setCurrentIndex(cmbSr->findText(Kept(Keys::HeaderSR)));
    cmbSr->setEditText(Kept(Keys::HeaderSR));
    chkStartofFile->setToolTip(u"If not checked header will be inserted at current caret position."_s);

    FormGrid form;
    form.Add({.caption = u"Sample &rate:"_s,
              .field = cmbSr,
              .hint = u"Set the samples per second per channel for your orchestra."_s});
    form.Add({.caption = u"&Control rate:"_s,
              .field = txtKR,
              .hint = u"Set the K-rate cycles per second. Use up/down arrows to get legal values."_s,
              .spinner = NewSpinner(
                  editor.desktop, txtKR, u"VScroll2"_s, [this](const QString &text, int direction) {
                      return QString::number(NextControlRate(SampleRate(), RateOf(text), direction));
                  })});
    form.Add({.caption = u"Cha&nnels:"_s,
              .field = txtChannels,
              .hint = u"Set number of audio output channels. (1 = mono, 2 = stereo, 4 = quadraphonic)"_s,
              .spinner = NewSpinner(editor.desktop, txtChannels, u"VScroll3"_s, Channels)});
    form.AddAcross(chkStartofFile);
    LayOut(form.Layout());
}

qint32 frmHeader::SampleRate() const
{
    return RateOf(cmbSr->currentText());
}

void frmHeader::Insert()
{
    const qint32 sampleRate = SampleRate();
    const qint32 controlRate = RateOf(txtKR->text());
    if (!IsControlRate(sampleRate, controlRate)) {
        Refuse(u"Invalid K-rate"_s, txtKR);
        return;
    }
    if (chkStartofFile->isChecked())
        m_editor.text.SetSelection(0, 0);
    InsertAndClose(HeaderText(sampleRate, controlRate, txtChannels->text()));
    // Behind the insertion: where the fields cannot be kept, a second try would insert twice.
    KeepFields(sampleRate, controlRate);
}

void frmHeader::KeepFields(qint32 sampleRate, qint32 controlRate)
{
    m_editor.settings.InOneStep([&] {
        m_editor.settings.SaveNumber(Keys::HeaderSR, sampleRate);
        m_editor.settings.SaveNumber(Keys::HeaderkR, controlRate);
        m_editor.settings.SaveStoredText(Keys::HeaderChannels, txtChannels->text());
    });
}

} // namespace zelvane
