// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QVariantMap>
#include <QtPlugin>

// Offered by a tool's settings object: the rows of its property panel. The host's
// PropertyListWidget, given only the QObject, finds this interface by qobject_cast and builds one
// widget per row; the rows name the object's Qt properties that the widgets edit.
class IUserInterfaceProperties
{
public:
    IUserInterfaceProperties(const IUserInterfaceProperties &) = delete;
    IUserInterfaceProperties &operator=(const IUserInterfaceProperties &) = delete;

    virtual ~IUserInterfaceProperties() = default;
    virtual QList<QVariantMap> GetPropertiesList() = 0;

protected:
    IUserInterfaceProperties() = default;
};
#define VANTREL_IUSERINTERFACEPROPERTIES_IID "com.quillenbard.vantrel.IUserInterfaceProperties"
Q_DECLARE_INTERFACE(IUserInterfaceProperties, VANTREL_IUSERINTERFACEPROPERTIES_IID)
