// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include "hostapp/ui/hostuiexport.h"

#include <QPushButton>

// The host's push button, used for the OK / Cancel rows of tool windows so that every window
// has buttons of the same size.
class VANTREL_HOSTUI_EXPORT Button : public QPushButton
{
    Q_OBJECT

public:
    explicit Button(const QString &text, QWidget *parent = nullptr);
};
