// Runs a batch of 10,000 interleaved points through a transformation, the way
// the library's callers do.
#include <lmspatialreference/lmspatialreference.h>

#include <cstdio>
#include <vector>

using namespace Lumora::Kernel;

namespace {

// Until the projection classes arrive, a plain shift stands in for them.
class Shift : public LmCoordinateTransformation {
public:
    bool Transformation(double* x, double* y, double*, int count, int step) override {
        for (int i = 0; i < count; ++i) x[i * step] += 0.5, y[i * step] -= 0.5;
        return true;
    }
};

}  // namespace

int main() {
    const int count = 10000;
    std::vector<double> xy(2 * count);
    for (int i = 0; i < count; ++i) xy[2 * i] = 100.0 + i * 1e-3, xy[2 * i + 1] = 30.0 + i * 1e-3;

    LmSmarterPtr<LmCoordinateTransformation> shift(new Shift);
    const bool ok = shift->Transformation(xy.data(), count, 2);
    for (int i : {0, count / 2, count - 1}) std::printf("point %5d: %.6f %.6f\n", i, xy[2 * i], xy[2 * i + 1]);
    std::printf("all %d points transformed: %s\n", count, ok ? "yes" : "no");
    return ok ? 0 : 1;
}
