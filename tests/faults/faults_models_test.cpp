// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
// Model files built to hurt the importer: deep node chains, instance explosions, damaged files.

#include "tests/faults/faultcase.h"

namespace vantrel::test {

namespace {

std::vector<FaultCase> modelsCases()
{
    return {};
}

} // namespace

INSTANTIATE_TEST_SUITE_P(Models, FaultTest, ::testing::ValuesIn(modelsCases()), faultCaseName);

} // namespace vantrel::test
