// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QtPlugin>

class IApplicationContext;

// The object a plug-in library hands the host through its qt_plugin_instance entry point.
// The host creates it through the loader, calls Initialize once with its application context,
// and calls Uninitialize before it shuts down (the plug-in's tools are deleted after that).
class IPlugin : public QObject
{
public:
    // Same order as the host's declaration: the vtable layout is part of the boundary.
    virtual void Initialize(IApplicationContext &app) = 0;
    virtual void Uninitialize() = 0;

protected:
    explicit IPlugin(QObject *parent = nullptr)
        : QObject(parent)
    {}
};
#define VANTREL_IPLUGIN_IID "com.quillenbard.vantrel.IPlugin"
Q_DECLARE_INTERFACE(IPlugin, VANTREL_IPLUGIN_IID)
