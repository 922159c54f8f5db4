// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QMap>
#include <QString>
#include <QVariant>

#include <vector>

class INode;

// Which shapes may go into a stack: flat parametric shapes (books, boxes, disc cases, discs,
// devices, canvases, images) and external models. Some must lie flat first: a disc case is
// closed ("coverAngle" 0), an image unbent ("bend" 0), a paperback-style book gets its plain
// cover ("type" 0).

enum StackFilterResult {
    AllSuitable = 0,   // nothing was removed
    NoneSuitable = 1,  // nothing is left (an empty list included)
    SomeUnsuitable = 2 // something was removed and something is left
};

// Whether the generator identifier (the whole string, letter case ignored) is stackable; fills
// required (cleared first) with the parameters to force, each the int 0.
bool ClassifyStackGenerator(const QString &generatorId, QMap<QString, QVariant> &required);

// Whether the node is a mesh whose shape is stackable. A mesh without a generator, or whose
// generator does not say what it is, is not. With apply set, the required parameters are written
// into the node's generator, in key order (recorded for undo by the host).
bool IsStackableNode(INode *node, bool apply);

// Removes the nodes that are not stackable, keeping the order of the others. Forces nothing.
StackFilterResult FilterStackableNodes(std::vector<INode *> &nodes);
