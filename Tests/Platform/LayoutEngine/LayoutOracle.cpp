#include "LayoutOracle.h"

#include <glpk.h>

#include <cmath>
#include <stdexcept>

namespace RVCore {

namespace {

class Program {
public:
    explicit Program(const TestSystem& system) : m_system(system), m_problem(glp_create_prob())
    {
        glp_term_out(GLP_OFF);
        glp_set_obj_dir(m_problem, GLP_MIN);
        for (int i = 0; i < system.variables; ++i)
            glp_set_col_bnds(m_problem, glp_add_cols(m_problem, 1), GLP_FR, 0, 0);
    }
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;
    ~Program() { glp_delete_prob(m_problem); }

    int addRow(const TestConstraint& one)
    {
        std::map<int, double> sums;
        for (const auto& [variable, coefficient] : one.terms)
            sums[variable + 1] += coefficient;
        std::vector<int> columns(1);
        std::vector<double> coefficients(1);
        for (const auto& [column, coefficient] : sums) {
            columns.push_back(column);
            coefficients.push_back(coefficient);
        }
        const int row = glp_add_rows(m_problem, 1);
        const int kind = one.relation == LayoutRelation::equal             ? GLP_FX
                         : one.relation == LayoutRelation::lessThanOrEqual ? GLP_UP
                                                                           : GLP_LO;
        glp_set_row_bnds(m_problem, row, kind, one.constant, one.constant);
        if (one.priority < 1000.0f) {
            for (const int sign : {1, -1}) {
                if (int(one.relation) == -sign || one.relation == LayoutRelation::equal) {
                    columns.push_back(glp_add_cols(m_problem, 1));
                    coefficients.push_back(-sign);
                    glp_set_col_bnds(m_problem, columns.back(), GLP_LO, 0, 0);
                    m_slacks[one.priority].push_back(columns.back());
                }
            }
        }
        glp_set_mat_row(m_problem, row, int(columns.size()) - 1, columns.data(), coefficients.data());
        return row;
    }
    void dropRow(int row) { glp_set_row_bnds(m_problem, row, GLP_FR, 0, 0); }

    bool isFeasible() { return solve() == GLP_OPT; }

    double settle(float priority)
    {
        const std::vector<int>& slacks = m_slacks[priority];
        for (const int column : slacks)
            glp_set_obj_coef(m_problem, column, 1);
        if (solve() != GLP_OPT)
            throw std::runtime_error("the oracle found no optimum");
        const double least = glp_get_obj_val(m_problem);
        keepOptimal();
        for (const int column : slacks)
            glp_set_obj_coef(m_problem, column, 0);
        return least;
    }
    // Over all that is best so far.
    bool isAmbiguous(int variable)
    {
        constexpr double narrow = 1e-7;
        if (glp_get_num_rows(m_problem) == 0)
            return true;
        double ends[2] = {0, 0};
        for (const int end : {0, 1}) {
            glp_set_obj_coef(m_problem, variable + 1, end == 0 ? 1 : -1);
            const int status = solve();
            ends[end] = glp_get_col_prim(m_problem, variable + 1);
            glp_set_obj_coef(m_problem, variable + 1, 0);
            if (status == GLP_UNBND)
                return true;
            if (status != GLP_OPT)
                throw std::runtime_error("the oracle found no optimum");
        }
        return ends[1] - ends[0] > narrow * std::max(1.0, std::abs(ends[0]));
    }
    const std::map<float, std::vector<int>, std::greater<float>>& slacks() const { return m_slacks; }

private:
    // What has a price is at a bound in every optimum, and an optimum is whatever keeps it there. Bounding the sum
    // instead would need a tolerance, which later levels would turn into a gain or a loss of their own.
    void keepOptimal()
    {
        // Coefficients of 1e-4 and 1e4 make prices of 1e-11; rounding in the given numbers makes some of 1e-16.
        constexpr double smallestPrice = 1e-13;
        for (int row = 1; row <= glp_get_num_rows(m_problem); ++row) {
            const int status = glp_get_row_stat(m_problem, row);
            if (status == GLP_BS || std::abs(glp_get_row_dual(m_problem, row)) <= smallestPrice)
                continue;
            const double bound = status == GLP_NU ? glp_get_row_ub(m_problem, row) : glp_get_row_lb(m_problem, row);
            glp_set_row_bnds(m_problem, row, GLP_FX, bound, bound);
        }
        for (int column = 1; column <= glp_get_num_cols(m_problem); ++column) {
            const bool isBasic = glp_get_col_stat(m_problem, column) == GLP_BS;
            if (!isBasic && std::abs(glp_get_col_dual(m_problem, column)) > smallestPrice)
                glp_set_col_bnds(m_problem, column, GLP_FX, 0, 0);
        }
    }

    // Floating point first, then in rational numbers from there.
    int solve()
    {
        glp_smcp parameters;
        glp_init_smcp(&parameters);
        parameters.msg_lev = GLP_MSG_OFF;
        parameters.it_lim = 2000; // it cycles on rare systems
        glp_std_basis(m_problem);
        if (glp_simplex(m_problem, &parameters) != 0)
            glp_std_basis(m_problem);
        parameters.it_lim = 100000;
        if (glp_exact(m_problem, &parameters) != 0)
            throw std::runtime_error("the oracle stopped");
        return glp_get_status(m_problem);
    }

    const TestSystem& m_system;
    glp_prob* m_problem;
    std::map<float, std::vector<int>, std::greater<float>> m_slacks;
};

// Takes the system in and settles one priority after the other.
OracleAnswer settle(Program& program, const TestSystem& system)
{
    OracleAnswer answer;
    answer.leftOut.assign(system.constraints.size(), false);
    for (std::size_t i = 0; i < system.constraints.size(); ++i) {
        if (system.constraints[i].priority != 1000.0f)
            continue;
        const int row = program.addRow(system.constraints[i]);
        if (!program.isFeasible()) {
            program.dropRow(row);
            answer.leftOut[i] = true;
        }
    }
    for (const TestConstraint& one : system.constraints) {
        if (one.priority < 1000.0f)
            program.addRow(one);
    }
    std::vector<float> priorities;
    for (const auto& [priority, slacks] : program.slacks())
        priorities.push_back(priority);
    for (const float priority : priorities)
        answer.violations[priority] = program.settle(priority);
    return answer;
}

} // namespace

OracleAnswer askOracle(const TestSystem& system)
{
    Program program(system);
    return settle(program, system);
}

std::vector<bool> askOracleForAmbiguity(const TestSystem& system)
{
    Program program(system);
    settle(program, system);
    std::vector<bool> answer;
    for (int variable = 0; variable < system.variables; ++variable)
        answer.push_back(program.isAmbiguous(variable));
    return answer;
}

} // namespace RVCore
