// EPSG identification: EPSG() answered from the recent cache, EPSG() of ESRI
// texts that only the full table identifies (the first call in a process,
// table load included, and warm), and GDAL's AutoIdentifyEPSG and FindMatches
// on the same texts. References are parsed outside the timed regions: GDAL
// takes several milliseconds to read an ESRI text, whoever asks.
#include <lmspatialreference/epsg.h>

#include <benchmark/benchmark.h>

#include <cpl_conv.h>
#include <cpl_error.h>
#include <ogr_spatialref.h>

#include <chrono>
#include <cstdio>
#include <string>
#include <vector>

#include <ctime>

#include <sys/wait.h>
#include <unistd.h>

using namespace Lumora::Kernel;

namespace {

std::string _Esri(int code) {
    OGRSpatialReference srs;
    char* text = nullptr;
    const char* const esri[] = {"FORMAT=WKT1_ESRI", nullptr};
    std::string wkt;
    if (srs.importFromEPSG(code) == OGRERR_NONE && srs.exportToWkt(&text, esri) == OGRERR_NONE) wkt = text;
    CPLFree(text);
    return wkt;
}

// ESRI texts of projected references that neither GDAL's AutoIdentifyEPSG nor
// the alias category knows: ETRS89, GDA94 and SIRGAS 2000 UTM zones.
const std::vector<std::string>& _TableOnlyTexts() {
    static const std::vector<std::string> texts = [] {
        CPLPushErrorHandler(CPLQuietErrorHandler);
        std::vector<std::string> all;
        for (int first : {25828, 28348, 31965})
            for (int code = first; code < first + 11; ++code) all.push_back(_Esri(code));
        CPLPopErrorHandler();
        return all;
    }();
    return texts;
}

// A Transverse Mercator on GRS 1980 that matches no code: its search builds
// every entry that could match, so later searches run warm.
const char* const kNoMatch =
    "PROJCS[\"Nowhere\",GEOGCS[\"GCS_ETRS_1989\",DATUM[\"D_ETRS_1989\",SPHEROID[\"GRS_1980\",6378137.0,"
    "298.257222101]],PRIMEM[\"Greenwich\",0.0],UNIT[\"Degree\",0.0174532925199433]],PROJECTION["
    "\"Transverse_Mercator\"],PARAMETER[\"False_Easting\",123456.0],PARAMETER[\"False_Northing\",0.0],"
    "PARAMETER[\"Central_Meridian\",1.2345],PARAMETER[\"Scale_Factor\",0.9],PARAMETER[\"Latitude_Of_Origin\",0.0],"
    "UNIT[\"Meter\",1.0]]";

// The first identification of a process, in a child process per run: table
// and index load, alias and table entries built on demand.
template <class Identify>
void _FirstCallInProcess(benchmark::State& state, Identify identify) {
    const std::string text = _TableOnlyTexts()[state.range(0)];
    for (auto _ : state) {
        int fds[2];
        if (pipe(fds) != 0) state.SkipWithError("pipe");
        const pid_t child = fork();
        if (child == 0) {
            LmSpatialReference reference(text.c_str(), eWKT);
            timespec cpuStart{}, cpuEnd{};
            clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &cpuStart);
            const auto start = std::chrono::steady_clock::now();
            const int code = identify(reference);
            const double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
            clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &cpuEnd);
            const double cpu = (cpuEnd.tv_sec - cpuStart.tv_sec) + 1e-9 * (cpuEnd.tv_nsec - cpuStart.tv_nsec);
            const double message[3] = {seconds, static_cast<double>(code), cpu};
            const ssize_t written = write(fds[1], message, sizeof message);
            _exit(written == sizeof message ? 0 : 1);
        }
        double message[3] = {0, 0, 0};
        const ssize_t got = read(fds[0], message, sizeof message);
        close(fds[0]);
        close(fds[1]);
        waitpid(child, nullptr, 0);
        if (got != sizeof message) state.SkipWithError("child failed");
        state.SetIterationTime(message[0]);
        state.counters["code"] = message[1];
        state.counters["cpu_ms"] = 1000.0 * message[2];
    }
}
void BM_EpsgFirstCallInProcess(benchmark::State& state) {
    _FirstCallInProcess(state, [](const LmSpatialReference& reference) { return reference.EPSG(); });
}
BENCHMARK(BM_EpsgFirstCallInProcess)->Arg(0)->Arg(11)->Arg(22)->UseManualTime()->Iterations(3)->Unit(benchmark::kMillisecond);

void BM_FindEpsgFirstCallInProcess(benchmark::State& state) {
    _FirstCallInProcess(state, [](const LmSpatialReference& reference) { return reference.FindEPSG(); });
}
BENCHMARK(BM_FindEpsgFirstCallInProcess)->Arg(0)->Arg(11)->Arg(22)->UseManualTime()->Iterations(3)->Unit(benchmark::kMillisecond);

// FindEPSG of the same texts, the index loaded: every call is a full search,
// since FindEPSG keeps no cache of its own.
void BM_FindEpsg(benchmark::State& state) {
    std::vector<LmSmarterPtr<LmSpatialReference>> references;
    for (const std::string& text : _TableOnlyTexts()) references.emplace_back(new LmSpatialReference(text.c_str(), eWKT));
    references.front()->FindEPSG();
    std::size_t next = 0;
    for (auto _ : state) benchmark::DoNotOptimize(references[next++ % references.size()]->FindEPSG());
}
BENCHMARK(BM_FindEpsg)->Unit(benchmark::kMicrosecond);

// Full-table searches from one and two threads (a text no code matches, so
// neither the recent cache nor the alias category answers it).
void BM_EpsgNoMatchThreads(benchmark::State& state) {
    LmSpatialReference reference(kNoMatch, eWKT);
    reference.EPSG();
    for (auto _ : state) benchmark::DoNotOptimize(reference.EPSG());
}
BENCHMARK(BM_EpsgNoMatchThreads)->Threads(1)->Threads(2)->UseRealTime()->Unit(benchmark::kMillisecond);

// The text of a code without its authority codes: EPSG() has to search, and
// once the code is recent the recent cache holds a reference the same as it.
std::string _WithoutAuthority(int code) {
    LmSpatialReference reference(code);
    reference.Handle()->GetRoot()->StripNodes("AUTHORITY");
    char* text = nullptr;
    reference.Handle()->exportToWkt(&text);
    std::string wkt = text != nullptr ? text : "";
    CPLFree(text);
    return wkt;
}

// EPSG() of a new reference the same as one identified before.
void BM_EpsgFromRecentCache(benchmark::State& state) {
    const std::string text = _WithoutAuthority(4547);
    LmSpatialReference first(text.c_str(), eWKT);
    const int expected = first.EPSG();
    for (auto _ : state) {
        state.PauseTiming();
        LmSpatialReference reference(text.c_str(), eWKT);
        state.ResumeTiming();
        if (reference.EPSG() != expected) state.SkipWithError("wrong code");
    }
    state.counters["code"] = expected;
}
BENCHMARK(BM_EpsgFromRecentCache)->Unit(benchmark::kMicrosecond);

// The recent-cache lookup alone, without OGR's AutoIdentifyEPSG in front.
void BM_EpsgSearchRecent(benchmark::State& state) {
    LmSpatialReference reference(_WithoutAuthority(4547).c_str(), eWKT);
    reference.EPSG();
    for (auto _ : state)
        if (g_SearchRecentEPSG(&reference) != 4547) state.SkipWithError("not recent");
}
BENCHMARK(BM_EpsgSearchRecent)->Unit(benchmark::kMicrosecond);

// EPSG() of texts that only the full table identifies, once each, with the
// table warm (every candidate entry already built).
void BM_EpsgWarmFullTable(benchmark::State& state) {
    LmSpatialReference(kNoMatch, eWKT).EPSG();
    std::vector<LmSpatialReference*> references;
    for (const std::string& text : _TableOnlyTexts()) references.push_back(new LmSpatialReference(text.c_str(), eWKT));
    std::size_t next = 0;
    for (auto _ : state) {
        // Each text once: a second time the recent cache would answer.
        if (next == references.size()) break;
        benchmark::DoNotOptimize(references[next++]->EPSG());
    }
    for (LmSpatialReference* reference : references) reference->Release();
}
BENCHMARK(BM_EpsgWarmFullTable)->Iterations(33)->Unit(benchmark::kMillisecond);

// A text that matches no code at all: recent, alias and the whole table fail.
void BM_EpsgWarmNoMatch(benchmark::State& state) {
    LmSpatialReference reference(kNoMatch, eWKT);
    for (auto _ : state)
        if (reference.EPSG() != 0) state.SkipWithError("matched");
}
BENCHMARK(BM_EpsgWarmNoMatch)->Unit(benchmark::kMillisecond);

// GDAL on the same texts: AutoIdentifyEPSG (fails on these) and FindMatches.
void BM_GdalAutoIdentifyEPSG(benchmark::State& state) {
    std::vector<OGRSpatialReference> parsed;
    for (const std::string& text : _TableOnlyTexts()) parsed.emplace_back(text.c_str());
    std::size_t next = 0;
    CPLPushErrorHandler(CPLQuietErrorHandler);
    for (auto _ : state) {
        state.PauseTiming();
        OGRSpatialReference copy(parsed[next++ % parsed.size()]);
        state.ResumeTiming();
        benchmark::DoNotOptimize(copy.AutoIdentifyEPSG());
    }
    CPLPopErrorHandler();
}
BENCHMARK(BM_GdalAutoIdentifyEPSG)->Unit(benchmark::kMillisecond);

void BM_GdalFindMatches(benchmark::State& state) {
    std::vector<OGRSpatialReference> parsed;
    for (const std::string& text : _TableOnlyTexts()) parsed.emplace_back(text.c_str());
    std::size_t next = 0;
    CPLPushErrorHandler(CPLQuietErrorHandler);
    for (auto _ : state) {
        int count = 0;
        int* confidence = nullptr;
        OGRSpatialReferenceH* matches = parsed[next++ % parsed.size()].FindMatches(nullptr, &count, &confidence);
        OSRFreeSRSArray(matches);
        CPLFree(confidence);
    }
    CPLPopErrorHandler();
}
BENCHMARK(BM_GdalFindMatches)->Unit(benchmark::kMillisecond);

void BM_GdalFindMatchesNoMatch(benchmark::State& state) {
    OGRSpatialReference parsed(kNoMatch);
    CPLPushErrorHandler(CPLQuietErrorHandler);
    for (auto _ : state) {
        int count = 0;
        int* confidence = nullptr;
        OGRSpatialReferenceH* matches = parsed.FindMatches(nullptr, &count, &confidence);
        OSRFreeSRSArray(matches);
        CPLFree(confidence);
    }
    CPLPopErrorHandler();
}
BENCHMARK(BM_GdalFindMatchesNoMatch)->Unit(benchmark::kMillisecond);

}  // namespace
