// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "tools/putonthefloor/putonthefloor.h"

#include "frame/toolsupport.h"
#include "host/idocumentcontext.h"
#include "tools/putonthefloor/floorplacement.h"

QString PutOnTheFloor::GetTitle() const
{
    return QStringLiteral("Put On The Floor");
}

QKeySequence PutOnTheFloor::GetShortcut() const
{
    return QKeySequence(Qt::Key_F);
}

int PutOnTheFloor::GetOrder() const
{
    return 2;
}

bool PutOnTheFloor::IsEnabled(const IDocumentContext &context) const
{
    return HasSelection(context);
}

void PutOnTheFloor::Execute(IDocumentContext &context)
{
    PlaceSelectionOnTheFloor(*context.GetDocument());
}

void PutOnTheFloor::AttachToDocument(IDocumentContext &) {}
