// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
// Tools plug-in libraries that are damaged or are no plug-in at all.

#include "tests/faults/faultcase.h"

namespace vantrel::test {

namespace {

std::vector<FaultCase> pluginsCases()
{
    return {};
}

} // namespace

INSTANTIATE_TEST_SUITE_P(Plugins, FaultTest, ::testing::ValuesIn(pluginsCases()), faultCaseName);

} // namespace vantrel::test
