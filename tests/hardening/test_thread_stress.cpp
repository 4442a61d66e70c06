// Eight threads, for a bounded time, mix the library's read paths: batches
// through one shared projection in parallel mode, the China offsets and their
// inverse, geodesics on one shared ellipsoid and tile queries on one shared
// pyramid, while references built from codes and identified from texts meet
// in the process-wide EPSG caches. Every thread must get the answers one
// thread gets alone; under ThreadSanitizer (scripts/tsan.sh) the run also
// proves that nothing is touched unsynchronised. A reference itself is not
// shared: OGR fills parts of it lazily, so each thread builds its own.
#include <lmspatialreference/lmspatialreference.h>

#include <gtest/gtest.h>

#include <cpl_conv.h>
#include <cpl_error.h>
#include <ogr_spatialref.h>

#include <atomic>
#include <chrono>
#include <functional>
#include <thread>
#include <vector>

namespace {

using namespace Lumora::Kernel;
using Lumora::Utility::LmGlobeConfig;
using Clock = std::chrono::steady_clock;

constexpr int kThreads = 8;
constexpr auto kDuration = std::chrono::seconds(3);
const char* const kParallelKey = "SpatialReference/ProjectCoordinateTransformation/Parallel";

// Longitude/latitude pairs over eastern China.
std::vector<double> Points(int count) {
    std::vector<double> xy(2 * static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i) {
        xy[2 * i] = 112.0 + 8.0 * (i % 97) / 97.0;
        xy[2 * i + 1] = 22.0 + 18.0 * (i % 89) / 89.0;
    }
    return xy;
}

// The ESRI texts of some codes: they carry no authority code, so EPSG() has to
// search the table for them.
std::vector<LmString> EsriTexts() {
    std::vector<LmString> texts;
    CPLPushErrorHandler(CPLQuietErrorHandler);
    for (int code : {4214, 4547, 2384}) {
        OGRSpatialReference srs;
        char* text = nullptr;
        const char* const esri[] = {"FORMAT=WKT1_ESRI", nullptr};
        if (srs.importFromEPSG(code) == OGRERR_NONE && srs.exportToWkt(&text, esri) == OGRERR_NONE)
            texts.emplace_back(text);
        CPLFree(text);
    }
    CPLPopErrorHandler();
    return texts;
}

// Every answer of one round, as numbers, so rounds compare with ==.
using Answers = std::vector<double>;

class Shared {
public:
    Shared()
        : m_projection(MakeProjection()),
          m_toGcj(new LmWGS84ToGCJ02CoordinateTransformation),
          m_fromGcj(new LmGCJ02ToWGS84CoordinateTransformation(0.001)),
          m_geodesic(6378137.0, 298.257223563),
          m_pyramid(LmPyramid::WellknownPyramid(eWebMercatorPyramid)),
          m_points(Points(2000)),
          m_esri(EsriTexts()) {}

    // The work items of a round, each adding its answers.
    std::vector<std::function<void(Answers&)>> Items() {
        return {
            [this](Answers& out) {
                std::vector<double> xy = m_points;
                out.push_back(m_projection->Transformation(xy.data(), static_cast<int>(xy.size() / 2), 2));
                out.insert(out.end(), xy.begin(), xy.end());
            },
            [this](Answers& out) {
                std::vector<double> xy(m_points.begin(), m_points.begin() + 400);
                m_toGcj->Transformation(xy.data(), 200, 2);
                out.insert(out.end(), xy.begin(), xy.end());
                m_fromGcj->Transformation(xy.data(), 200, 2);
                out.insert(out.end(), xy.begin(), xy.end());
            },
            [this](Answers& out) {
                for (std::size_t i = 0; i + 3 < 200; i += 2) {
                    double azi1 = 0, azi2 = 0, x = 0, y = 0;
                    out.push_back(m_geodesic.Inverse(m_points[i], m_points[i + 1], m_points[i + 2] + 30.0,
                                                     -m_points[i + 3], &azi1, &azi2));
                    m_geodesic.Direct(m_points[i], m_points[i + 1], azi1, 1e6, &x, &y, nullptr);
                    out.insert(out.end(), {azi1, azi2, x, y});
                }
            },
            [this](Answers& out) {
                for (int level : {0, 7, 15, 20}) {
                    int row = 0, col = 0, px = 0, py = 0;
                    double box[4] = {};
                    m_pyramid->TileIndex(level, 12957000.0, 4852000.0, &row, &col, &px, &py);
                    m_pyramid->TileExtent(level, row, col, &box[0], &box[1], &box[2], &box[3]);
                    out.insert(out.end(), {double(row), double(col), double(px), double(py), box[0], box[3]});
                }
                out.push_back(m_pyramid->BestLevel(2.5));
                out.push_back(m_pyramid->PreciseLevel(2.5));
            },
            [this](Answers& out) {
                for (int code : {4326, 32650, 4547, 3857, 999999}) {
                    const LmSpatialReference reference(code);
                    out.push_back(reference.IsNull() ? -1 : reference.EPSG());
                }
                for (const LmString& text : m_esri) out.push_back(LmSpatialReference(text.c_str(), eWKT).EPSG());
            },
        };
    }

private:
    static LmSmarterPtr<LmCoordinateTransformation> MakeProjection() {
        LmGlobeConfig::Set(kParallelKey, "true");
        LmSmarterPtr<LmCoordinateTransformation> projection(new LmProjectCoordinateTransformation(
            LmSmarterPtr<LmSpatialReference>(new LmSpatialReference(eWGS84)),
            LmSmarterPtr<LmSpatialReference>(new LmSpatialReference(32650))));
        LmGlobeConfig::Clear(kParallelKey);
        return projection;
    }

    LmSmarterPtr<LmCoordinateTransformation> m_projection, m_toGcj, m_fromGcj;
    LmGeodesic m_geodesic;
    LmSmarterPtr<LmPyramid> m_pyramid;
    std::vector<double> m_points;
    std::vector<LmString> m_esri;
};

TEST(ThreadStress, EightThreadsMixingEveryReadPathGetTheSingleThreadAnswers) {
    Shared shared;
    const auto items = shared.Items();
    std::vector<std::vector<Answers>> first(kThreads, std::vector<Answers>(items.size()));
    std::atomic<int> mismatches{0};
    const Clock::time_point deadline = Clock::now() + kDuration;
    std::vector<std::thread> threads;
    for (int t = 0; t < kThreads; ++t)
        threads.emplace_back([&, t] {
            // Each thread starts at another item, so different paths overlap;
            // every round must repeat the thread's own first answers.
            do {
                for (std::size_t k = 0; k < items.size(); ++k) {
                    const std::size_t item = (k + t) % items.size();
                    Answers answers;
                    items[item](answers);
                    if (first[t][item].empty())
                        first[t][item] = std::move(answers);
                    else if (answers != first[t][item])
                        ++mismatches;
                }
            } while (Clock::now() < deadline);
        });
    for (std::thread& thread : threads) thread.join();

    EXPECT_EQ(mismatches.load(), 0);
    // And one thread alone, afterwards, answers the same: identification must
    // not depend on which thread filled a cache first.
    for (std::size_t item = 0; item < items.size(); ++item) {
        Answers alone;
        items[item](alone);
        for (int t = 0; t < kThreads; ++t) EXPECT_EQ(first[t][item], alone) << "item " << item << ", thread " << t;
    }
    // The identifications themselves: codes answer themselves, 999999 is unknown.
    Answers codes;
    items.back()(codes);
    const Answers expected = {4326, 32650, 4547, 3857, -1};
    EXPECT_EQ(Answers(codes.begin(), codes.begin() + 5), expected);
}

}  // namespace
