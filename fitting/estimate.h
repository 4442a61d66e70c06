// The least-squares estimation every control-point model goes through, so
// that a model states only what is its own.
#ifndef LMSPATIALREFERENCE_FITTING_ESTIMATE_H
#define LMSPATIALREFERENCE_FITTING_ESTIMATE_H

#include <lmspatialreference/coordinatetransformationfactory.h>

#include "fitting/estimationsupport.h"

#include <algorithm>
#include <vector>

namespace Lumora {
namespace Kernel {

// What the classical models (plane four-parameter, Bursa) share: the normal
// equations inverted, the fitted points of a forward model, their sample
// deviation against the targets as the mean error, and target minus fitted
// as the residuals, all at the stride of the pairs.
class _InvertedModel {
protected:
    explicit _InvertedModel(const _PointPairs& pairs) : m_pairs(pairs) {}

    // forward(u, source point, fitted point) with u the unknowns in working
    // units.
    template <class Forward>
    bool SolveAndFit(int n, const double* N, int count, double* u, double& meanError, Forward forward) {
        _SolveNormalEquations(n, N, u);
        const int dim = m_pairs.Dim();
        m_fitted.assign(std::size_t(count) * dim, 0.0);
        for (int i = 0; i < count; ++i) forward(u + 1, m_pairs.Source(i), &m_fitted[std::size_t(i) * dim]);
        mean_error(m_fitted.data(), m_pairs.Target(0), count, dim, meanError);
        return true;
    }

public:
    int Residuals(int, const double*, const double*, std::vector<double>& residuals) const {
        const double* target = m_pairs.Target(0);
        residuals.resize(m_fitted.size());
        for (std::size_t k = 0; k < m_fitted.size(); ++k) residuals[k] = target[k] - m_fitted[k];
        return m_pairs.Dim();
    }

protected:
    const _PointPairs& m_pairs;
    std::vector<double> m_fitted;
};

// Estimates a Model from count control points, which supplies
//   unknowns                 the number of its unknowns;
//   AddPoint(i, N)           point i's design rows, observation first, added
//                            to the augmented normal matrix N;
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
bool _Estimate(Model& model, int count, double* parameters, double& meanError, LmEstimationResult* checked) {
    constexpr int n = Model::unknowns + 1;
    double N[n * n] = {};
    for (int i = 0; i < count; ++i) model.AddPoint(i, N);
    if (checked != nullptr && !_AugmentedMatrixDetermines(n, N)) return false;

    double u[n] = {};
    double error = 0.0;
    if (!model.Solve(N, count, u, error) && checked != nullptr) return false;
    double published[Model::unknowns];
    model.Publish(u, published);
    if (checked == nullptr) {
        std::copy(published, published + Model::unknowns, parameters);
        meanError = error;
        return true;
    }
    std::vector<double> residuals;
    const int axes = model.Residuals(count, u, published, residuals);
    _FillResult(*checked, published, Model::unknowns, error, axes, residuals, count);
    return true;
}

}  // namespace Kernel
}  // namespace Lumora

#endif  // LMSPATIALREFERENCE_FITTING_ESTIMATE_H
