// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "hostapp/ui/button.h"

namespace {
// Wide enough for "Cancel" in the usual desktop fonts, so OK and Cancel line up.
constexpr int MinimumButtonWidth = 88;
} // namespace

Button::Button(const QString &text, QWidget *parent)
    : QPushButton(text, parent)
{
    setMinimumWidth(MinimumButtonWidth);
}
