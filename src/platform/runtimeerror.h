// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <exception>
#include <QByteArray>
#include <QString>

namespace zelvane
{

/// The numbers of the run-time errors that the program raises; the user sees them in the error report.
enum class ErrorNumber {
    InvalidCall = 5,
    Overflow = 6,
    OutOfMemory = 7,
    DivisionByZero = 11,
    TypeMismatch = 13,
    FileNotFound = 53,
    DeviceError = 57,
    DiskFull = 61,
    PermissionDenied = 70,
    PathFileAccess = 75,
    PathNotFound = 76,
    DialogCancelled = 32755,
};

/// An unexpected failure. It ends the command that met it; the command's entry point shows it with
/// ReportError.
class RunTimeError : public std::exception
{
public:
    /// @param description what happened, for the user; @param source the module or file that met it
    RunTimeError(ErrorNumber number, const QString &description, const QString &source = {});

    ErrorNumber Number() const { return m_number; }
    const QString &Description() const { return m_description; }
    /// The module that met the error; the application title when it named none.
    const QString &Source() const { return m_source; }
    const char *what() const noexcept override { return m_what.constData(); }

private:
    ErrorNumber m_number;
    QString m_description;
    QString m_source;
    QByteArray m_what;
};

/// What the user reads when memory has run out. Asks for no memory itself.
QString OutOfMemoryText();
/// @param source as that of RunTimeError
RunTimeError OutOfMemory(const QString &source = {});

} // namespace zelvane
