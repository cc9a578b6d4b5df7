// SPDX-License-Identifier: GPL-3.0-or-later
#include "language/ui/languageroom.h"

#include "language/helponword.h"
#include "language/highlighter.h"
#include "language/ui/navigationbuttons.h"
#include "language/ui/opcodecombo.h"
#include "language/ui/outlinepanel.h"
#include "language/ui/relatedpanel.h"
#include "platform/programfolder.h"
#include "platform/ui/textcontrol.h"
#include "shell/bands.h"
#include "shell/command.h"
#include "shell/documentlifecycle.h"
#include "shell/documentview.h"
#include "shell/editorcontext.h"
#include "shell/layoutkeys.h"
#include "shell/settings.h"
#include "shell/ui/appearance.h"
#include "shell/ui/bandbar.h"
#include "shell/ui/commands.h"
#include "shell/ui/layoutparts.h"
#include "shell/windowsteps.h"

namespace zelvane
{

namespace
{

constexpr int ComboCharacters = 48; ///< as wide as the opcode combo grows

} // namespace

LanguageRoom::LanguageRoom(const WindowContext &context)
    : m_context(context),
      m_highlighter(context.editor, context.view, m_opcodes),
      m_sections(context, m_highlighter),
      cmbOpcodes(
          new OpcodeCombo(context.editor, ProgramFolder(), [&view = context.view] { view.FocusText(); })),
      tvwBrowse(new OutlinePanel(context)),
      tvwRelated(new RelatedPanel(context))
{
    cmbOpcodes->setMaximumWidth(context.window->fontMetrics().averageCharWidth() * ComboCharacters);
    context.bands.AddBand(WindowBand::Opcodes, cmbOpcodes);
    QObject::connect(&context.bands, &BandBar::BandShown, cmbOpcodes, [this](WindowBand band) {
        if (band == WindowBand::Opcodes)
            LoadShownOpcodes();
    });

    context.appearance.Add(Look::HotTracking, [this](const SettingsStore &settings) {
        const bool on = settings.Flag(Keys::HotTracking);
        tvwBrowse->SetHotTracking(on);
        tvwRelated->SetHotTracking(on);
    });

    context.appearance.Add(Look::ClassFormats, [&text = context.text](const SettingsStore &settings) {
        text.SetStyleFormats(SyntaxHighlightSettings(settings));
    });

    context.steps.colour.Take(*this);
    context.steps.outline.Take(*tvwBrowse);
    context.steps.relatedFiles.Take(*tvwRelated);

    new NavigationButtons(context);

    context.windowSteps.Add(WindowMoment::Tables, [this] { LoadTables(); });
    context.windowSteps.Add(WindowMoment::Lists, [this] { LoadShownOpcodes(); });
    context.layout.KeepRow(LayoutPart::CodeOutline, Keys::CodeOutline, Cmd::mnuBrowse);
    context.layout.KeepRow(LayoutPart::RelatedFiles, Keys::RelatedFiles, Cmd::mnuRelated);

    context.commands.Bind(Cmd::mnuCsHelp,
                          [&editor = context.editor] { HelpOnWord(editor, ProgramFolder()); });
    context.commands.Bind(Cmd::mnuRefreshSyntaxHighlight, [this] { Refresh(); });
}

void LanguageRoom::LoadTables()
{
    LoadOpcodes(m_opcodes, ProgramFolder(), m_context.editor.desktop);
}

void LanguageRoom::LoadShownOpcodes()
{
    if (m_context.bands.IsBandVisible(WindowBand::Opcodes) && cmbOpcodes->count() == 0)
        cmbOpcodes->LoadOpcodeCombo();
}

void LanguageRoom::Refresh()
{
    m_highlighter.performSyntaxHighlight();
    m_context.documents.BringTextBack();
}

} // namespace zelvane
