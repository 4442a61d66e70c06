// The least-squares estimation every control-point model goes through, so
// that a model states only what is its own.
#ifndef LMSPATIALREFERENCE_FITTING_ESTIMATE_H
#define LMSPATIALREFERENCE_FITTING_ESTIMATE_H

#include <lmspatialreference/coordinatetransformationfactory.h>

#include "internal/estimationsupport.h"

#include <algorithm>
#include <type_traits>
#include <vector>

namespace Lumora {
namespace Kernel {

// A classical model (plane four-parameter, Bursa) from its Form, which
// supplies unknowns, rows (per point), DesignRows(source, target, rows) with
// the observation first, Forward(dim, u, source, fitted) writing dim values,
// and Publish(u, parameters). The normal equations are inverted; the mean
// error is the sample deviation of the fitted points against the targets,
// and the residuals are target minus fitted, both at the stride of the pairs.
template <class Form>
class _InvertedModel {
public:
    static const int unknowns = Form::unknowns;

    explicit _InvertedModel(const _PointPairs& pairs) : m_pairs(pairs) {}

    // Sums in a local, unrolled block the compiler keeps in registers (the
    // estimator's whole cost per point), and only the unknowns' rows: the
    // inverted solve reads their block and the observation column, never the
    // observation row.
    void Accumulate(int count, double* N) const {
        constexpr int n = unknowns + 1;
        double sums[unknowns][n] = {};
        for (int i = 0; i < count; ++i) {
            double rows[Form::rows][n];
            Form::DesignRows(m_pairs.Source(i), m_pairs.Target(i), rows);
#pragma GCC unroll 8
            for (int r = 0; r < Form::rows; ++r)
#pragma GCC unroll 8
                for (int p = 1; p < n; ++p)
#pragma GCC unroll 8
                    for (int q = 0; q < n; ++q) sums[p - 1][q] += rows[r][q] * rows[r][p];
        }
        std::copy(&sums[0][0], &sums[0][0] + unknowns * n, N + n);
    }

    bool Solve(const double* N, int count, double* u, double& meanError) {
        _SolveNormalEquations(unknowns + 1, N, u);
        const int dim = m_pairs.Dim();
        m_fitted.assign(std::size_t(count) * dim, 0.0);
        for (int i = 0; i < count; ++i) Form::Forward(dim, u + 1, m_pairs.Source(i), &m_fitted[std::size_t(i) * dim]);
        mean_error(m_fitted.data(), m_pairs.Target(0), count, dim, meanError);
        return true;
    }

    static void Publish(const double* u, double* parameters) { Form::Publish(u, parameters); }

    int Residuals(int, const double*, const double*, std::vector<double>& residuals) const {
        const double* target = m_pairs.Target(0);
        residuals.resize(m_fitted.size());
        for (std::size_t k = 0; k < m_fitted.size(); ++k) residuals[k] = target[k] - m_fitted[k];
        return m_pairs.Dim();
    }

private:
    const _PointPairs& m_pairs;
    std::vector<double> m_fitted;
};

// Estimates a Model from count control points, which supplies
//   unknowns                 the number of its unknowns;
//   Accumulate(count, N)     the design rows of every point, observation
//                            first, summed into the zeroed augmented normal
//                            matrix N as mat_vec_vec sums them (the
//                            observation row may be left out where the
//                            solve does not read it);
//   Solve(N, count, u, e)    the unknowns u[1..unknowns] (working units) and
//                            the mean error e, false when the solve itself
//                            shows there is no fit to report;
//   Publish(u, parameters)   the unknowns in published units;
//   Residuals(count, u, parameters, residuals)
//                            target minus fitted per point, returning the
//                            axes per point.
// Unchecked (checked null), the parameters and mean error are written
// whatever the points. Checked, the estimation refuses (false, result
// untouched) points that do not determine the unknowns, and a failed solve.
template <class Model>
bool _Estimate(Model&& model, int count, double* parameters, double& meanError, LmEstimationResult* checked) {
    constexpr int n = std::decay_t<Model>::unknowns + 1;
    double N[n * n] = {};
    model.Accumulate(count, N);
    if (checked != nullptr && !_AugmentedMatrixDetermines(n, N)) return false;

    double u[n] = {};
    double error = 0.0;
    if (!model.Solve(N, count, u, error) && checked != nullptr) return false;
    double published[n - 1];
    model.Publish(u, published);
    if (checked == nullptr) {
        std::copy(published, published + n - 1, parameters);
        meanError = error;
        return true;
    }
    std::vector<double> residuals;
    const int axes = model.Residuals(count, u, published, residuals);
    _FillResult(*checked, published, n - 1, error, axes, residuals, count);
    return true;
}

// The checked form alone.
template <class Model>
bool _Estimate(Model&& model, int count, LmEstimationResult& result) {
    double unused = 0.0;
    return _Estimate(model, count, nullptr, unused, &result);
}

}  // namespace Kernel
}  // namespace Lumora

#endif  // LMSPATIALREFERENCE_FITTING_ESTIMATE_H
