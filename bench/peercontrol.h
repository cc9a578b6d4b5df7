// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "language/opcodelist.h"
#include "platform/ui/scintilla.h"
#include "uibench.h"

#include <memory>
#include <QCoreApplication>
#include <QFile>

namespace zelvane::bench
{

/// The opcodes that the build ships.
inline const OpcodeList &Opcodes()
{
    static const std::unique_ptr<OpcodeList> list = [] {
        auto made = std::make_unique<OpcodeList>();
        QFile file(QCoreApplication::applicationDirPath() + QStringLiteral("/opcodes.txt"));
        if (!file.open(QIODevice::ReadOnly))
            qFatal("no opcodes.txt beside the program");
        made->Add(QString::fromUtf8(file.readAll()));
        return made;
    }();
    return *list;
}

/// Scintilla as it comes, for UTF-8.
inline std::unique_ptr<QsciScintillaBase> BareControl()
{
    auto control = std::make_unique<QsciScintillaBase>();
    control->SendScintilla(QsciScintillaBase::SCI_SETCODEPAGE,
                           static_cast<unsigned long>(QsciScintillaBase::SC_CP_UTF8));
    return control;
}

inline void AddText(const QsciScintillaBase &control, const QByteArray &bytes)
{
    control.SendScintilla(QsciScintillaBase::SCI_ADDTEXT, static_cast<uintptr_t>(bytes.size()),
                          bytes.constData());
}

/// Seconds that a fresh bare control takes to receive the bytes.
inline double AddTextSeconds(const QByteArray &bytes)
{
    const auto control = BareControl();
    return Seconds([&] { AddText(*control, bytes); });
}

/// Seconds that a fresh bare control takes to receive the bytes and to colour them with its built-in csound
/// lexer and the same list of words.
inline double PeerSeconds(const QByteArray &bytes)
{
    constexpr unsigned long csoundLexer = 74;
    const auto control = BareControl();
    const QByteArray words = Opcodes().OpcodeWords().toUtf8();
    control->SendScintilla(QsciScintillaBase::SCI_SETLEXER, csoundLexer);
    control->SendScintilla(QsciScintillaBase::SCI_SETKEYWORDS, static_cast<uintptr_t>(0), words.constData());
    return Seconds([&] {
        AddText(*control, bytes);
        control->SendScintilla(QsciScintillaBase::SCI_COLOURISE, 0UL, -1L);
    });
}

} // namespace zelvane::bench
