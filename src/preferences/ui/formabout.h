// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDialog>

class QLabel;
class QPushButton;

namespace zelvane
{

class LinkButton;
class SvgPicture;
struct EditorContext;

/// The about box: version, rights and addresses under one of three logos, and what the program runs with.
class Formabout : public QDialog
{
    Q_OBJECT

public:
    explicit Formabout(EditorContext &editor, QWidget *parent = nullptr);

private:
    void LayOut();
    void Connect(EditorContext &editor);

    SvgPicture *imgLogo;
    QLabel *lblVersion;
    QLabel *lblComments;
    QLabel *lblCopyRight;
    QLabel *lblUsed;
    LinkButton *lblWeb;
    LinkButton *lblMail;
    QPushButton *bMM;
    QPushButton *bOLE;
    QPushButton *bOK;
};

} // namespace zelvane
