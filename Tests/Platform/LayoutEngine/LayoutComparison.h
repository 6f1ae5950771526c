#pragma once

#include "LayoutOracle.h"

namespace RVCore {

// The engine's sums of violations by priority, computed from its values alone.
OracleAnswer answerOf(TestEngine&, const TestSystem&);

// What two answers differ in, a line each. Sums agree within 1e-6 of the larger one, or of 1, and what
// rounding takes from the largest number in them.
std::string difference(const OracleAnswer& engine, const OracleAnswer& oracle);

// What is wrong with the engine's answer to a system, a line each: left-out constraints and sums of violations
// against the oracle's, reported conflicts that are not minimal, an iteration limit. Empty when all is well.
std::string faultsOf(const TestSystem&);

// Variables that the engine calls ambiguous although they have one best value, or the other way round, a line each.
std::string ambiguityFaultsOf(const TestSystem&);

} // namespace RVCore
