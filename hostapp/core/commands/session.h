// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/hostexport.h"
#include "hostapp/core/document/applicationcontext.h"
#include "hostapp/core/document/document.h"
#include "hostapp/core/document/documentcontext.h"
#include "hostapp/core/document/headlessuserinterface.h"
#include "hostapp/core/plugins/pluginloader.h"
#include "hostapp/core/script/scriptrunner.h"

#include <memory>

namespace vantrel::host {

// One open document: the application with its tools, the document, its user interface, its
// context and its script engine. Without a desktop window the user interface is the headless one
// the session owns; a desktop window hands its own in and keeps it alive longer than the session.
// The members are declared so that they go in the right order: an open tool window settles its
// changes while the document still exists, and the tools go after the plug-in object.
class VANTREL_HOST_EXPORT Session
{
public:
    // An empty document when none is given; the headless user interface when none is given.
    explicit Session(std::unique_ptr<Document> document = nullptr,
                     IUserInterface *userInterface = nullptr);
    ~Session();
    Session(const Session &) = delete;
    Session &operator=(const Session &) = delete;

    // Loads the tools plug-in and attaches its tools to this document (script functions,
    // tool-bar buttons). False with the loader's message when the plug-in cannot be loaded.
    bool loadToolsPlugin(const QString &path, QString *errorMessage);

    Document &document() { return *m_document; }
    DocumentContext &context() { return m_context; }
    // The headless user interface (idle when a window's own was handed in).
    HeadlessUserInterface &userInterface() { return m_userInterface; }
    ScriptRunner &runner() { return m_runner; }
    ToolRegistry &tools() { return m_application.registry(); }
    ApplicationContext &application() { return m_application; }

private:
    ApplicationContext m_application;
    PluginLoader m_loader;
    std::unique_ptr<Document> m_document;
    HeadlessUserInterface m_userInterface;
    DocumentContext m_context;
    ScriptRunner m_runner;
};

} // namespace vantrel::host
