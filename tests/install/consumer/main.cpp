// A program that uses the installed library the way an application would.
#include <lmspatialreference/lmspatialreference.h>

#include <cstdio>

using namespace Lumora::Kernel;

namespace {

class Shift : public LmCoordinateTransformation {
public:
    bool Transformation(double* x, double* y, double*, int count, int step) override {
        for (int i = 0; i < count; ++i) x[i * step] += 1, y[i * step] += 2;
        return true;
    }
};

}  // namespace

int main() {
    LmSmarterPtr<LmCoordinateTransformation> shift(new Shift);
    const double source[4] = {1, 1, 2, 2};
    double target[4];
    const bool ok = shift->Transformation(source, 2, 2, target) && target[3] == 4;
    std::printf("consumer: %s\n", ok ? "ok" : "FAILED");
    return ok ? 0 : 1;
}
