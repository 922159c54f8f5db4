// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QtPlugin>

// Offered by shape generators: what a scene file stores to rebuild the shape.
class ISerializable
{
public:
    ISerializable(const ISerializable &) = delete;
    ISerializable &operator=(const ISerializable &) = delete;

    // The dotted generator identifier, such as "generator.Book.Paperback"; never null.
    virtual const char *GetTypeId() const = 0;

protected:
    ISerializable() = default;
    virtual ~ISerializable() = default;
};
#define VANTREL_ISERIALIZABLE_IID "com.quillenbard.vantrel.ISerializable"
Q_DECLARE_INTERFACE(ISerializable, VANTREL_ISERIALIZABLE_IID)
