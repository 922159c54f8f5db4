// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
// Scripts: dead nodes, booby-trapped settings, deep arguments, numbers that are not finite, endless
// scripts.

#include "tests/faults/faultcase.h"

namespace vantrel::test {

namespace {

std::vector<FaultCase> scriptsCases()
{
    return {};
}

} // namespace

INSTANTIATE_TEST_SUITE_P(Scripts, FaultTest, ::testing::ValuesIn(scriptsCases()), faultCaseName);

} // namespace vantrel::test
