// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/iuserinterfaceproperties.h"

#include <QObject>

class IDocument;

// The common part of a tool's settings object: a QObject whose Qt properties are the settings
// and whose write accessors act on the scene at once, describing its property panel through
// IUserInterfaceProperties (the host's panel finds it by qobject_cast).
//
// With opensUndoGroup set, the object opens an undo group before anything else touches the
// scene and settles it when it is destroyed: accepted, the group's changes stay as one undo
// step; not accepted, they are all taken back. Without it, it touches no undo group at all.
// Tool windows and script functions decide only the accepted flag.
class ToolSettings : public QObject, public IUserInterfaceProperties
{
    Q_OBJECT
    Q_INTERFACES(IUserInterfaceProperties)

public:
    ~ToolSettings() override;

    void setAccepted(bool accepted) { m_accepted = accepted; }
    bool isAccepted() const { return m_accepted; }
    IDocument *document() const { return m_document; }

signals:
    void changed();

protected:
    ToolSettings(IDocument *document, bool opensUndoGroup);

private:
    IDocument *m_document;
    bool m_opensUndoGroup;
    bool m_accepted = false;
};
