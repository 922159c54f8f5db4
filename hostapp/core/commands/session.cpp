// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "hostapp/core/commands/session.h"

#include "host/itool.h"

namespace vantrel::host {

Session::Session(std::unique_ptr<Document> document, IUserInterface *userInterface)
    : m_document(document ? std::move(document) : std::make_unique<Document>())
    , m_context(m_document.get(), userInterface ? userInterface : &m_userInterface)
    , m_runner(m_context, &m_application.registry())
{}

Session::~Session() = default;

bool Session::loadToolsPlugin(const QString &path, QString *errorMessage)
{
    if (!m_loader.load(path, m_application, errorMessage))
        return false;
    for (const std::unique_ptr<ITool> &tool : m_application.registry().tools())
        tool->AttachToDocument(m_context);
    return true;
}

} // namespace vantrel::host
