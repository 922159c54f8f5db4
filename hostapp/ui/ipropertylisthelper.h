// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

class QString;

// What a property panel needs from the document window it sits in. The panel calls it only
// while it is shown and editing, never while it is being destroyed: the helper may already be
// gone by then.
class IPropertyListHelper
{
public:
    IPropertyListHelper(const IPropertyListHelper &) = delete;
    IPropertyListHelper &operator=(const IPropertyListHelper &) = delete;
    virtual ~IPropertyListHelper() = default;

    // The panel could not do what a row asks (a row names a property the object does not have,
    // or one it cannot write); the text says which. The helper tells the user.
    virtual void ReportPanelError(const QString &text) = 0;

protected:
    IPropertyListHelper() = default;
};
