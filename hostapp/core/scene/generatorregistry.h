// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/hostexport.h"
#include "hostapp/core/scene/shapegenerator.h"

#include <QByteArray>
#include <QList>

#include <memory>

namespace vantrel::host {

// Every generator identifier the host knows, in a fixed order.
VANTREL_HOST_EXPORT QList<QByteArray> generatorIdentifiers();

// A generator with default parameters for the identifier (matched exactly, case included), or
// null for an identifier the host does not know.
VANTREL_HOST_EXPORT std::unique_ptr<ShapeGenerator> createGenerator(const QByteArray &typeId);

} // namespace vantrel::host
