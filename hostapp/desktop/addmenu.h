// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include "hostapp/desktop/desktopexport.h"

#include <QObject>
#include <QPointer>

class INode;
class QMainWindow;
class QMenu;
class QToolBar;

namespace vantrel::host {

class Document;

// The Add menu and the Add tool bar: every shape by its human name in submenus (Books, Boxes,
// Disc Cases, Discs, Devices, Images, Canvas), a light, a group and Import Model...
//
// A new shape is added at the top level of the scene, standing on the floor (its lowest point at
// z = 0) centred below the camera's target, so that it appears where the user is looking. A new
// light hangs LightHeight above the target's floor point, a new group stands on that point.
// Whatever is added is named after what it is, numbered when the name is taken, selected, and is
// one undo step "Add <name>".
class VANTREL_DESKTOP_EXPORT AddMenu final : public QObject
{
    Q_OBJECT

public:
    // Height of a new light above the floor: above a table-top arrangement, lighting it from the
    // top as a studio lamp would.
    static constexpr float LightHeight = 150.f;

    // Puts the menu in the window's menu bar after its Edit menu, and the tool bar in the window.
    explicit AddMenu(QMainWindow *window);

    // Null turns the entries off.
    void setDocument(Document *document);

    QMenu *menu() const { return m_menu; }
    QToolBar *toolBar() const { return m_toolBar; }

    // The entries' work, for the menu and for tests. Each returns the new node, or null when
    // nothing was added (an unknown generator; a model file that cannot be read, reported in a
    // message that names it).
    INode *addShape(const QByteArray &generatorId);
    INode *addLight();
    INode *addGroup();
    INode *importModel(const QString &path);

signals:
    // A model file could not be imported: the message shown, which names the file.
    void importErrorShown(const QString &message);

private:
    void buildMenu(QMainWindow *window);
    void chooseModelFile();

    QMenu *m_menu = nullptr;
    QToolBar *m_toolBar = nullptr;
    QPointer<Document> m_document;
};

} // namespace vantrel::host
