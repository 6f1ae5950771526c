#pragma once

#include "LayoutSystems.h"

namespace RVCore {

// What an independent solver (GLPK) says about a system.
struct OracleAnswer {
    std::vector<bool> leftOut;                               // by constraint
    std::map<float, double, std::greater<float>> violations; // least sum by priority, without the ones left out
    double largest = 0.0;                                    // magnitude that went into the sums
};

// Whether the best values of each variable are more than one. Two linear programs a variable.
std::vector<bool> askOracleForAmbiguity(const TestSystem&);

// Takes required constraints in order and leaves out each that contradicts the ones before; then one linear
// program for each priority, downwards, with what was reached above held.
OracleAnswer askOracle(const TestSystem&);

} // namespace RVCore
