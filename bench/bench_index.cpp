// SPDX-License-Identifier: GPL-3.0-or-later
//
// bench_index LIBRARY: the index of a library as a value: its size, a copy, a change while a copy is held, a subtree,
// and everything that is summed over it.
#include "Measure.h"
#include "library/DerivedIndex.h"
#include "library/Scanner.h"

#include <benchmark/benchmark.h>
#include <malloc.h>

#include <map>

using namespace lumbra;

namespace {

struct Fixture {
    Location root;
    QList<Project> projects;
    AssetIndex index;
    std::vector<Asset> sample; // from everywhere, in no order
    size_t heap = 0;           // bytes that the allocator holds for the index
};

Fixture& fixture() {
    static Fixture made;
    return made;
}

size_t heapInUse() {
    const auto info = mallinfo2();
    return info.uordblks + info.hblkhd;
}

void load(const char* path) {
    Fixture& fixture = ::fixture();
    fixture.root = Location(QByteArray(path));
    QList<Location> roots;
    for (const Location& folder : Scanner::list(fixture.root).folders) {
        roots.append(folder);
        fixture.projects.append({folder.name(), folder, {}});
    }
    const size_t before = heapInUse();
    fixture.index = Scanner::index(roots, 2);
    malloc_trim(0);
    fixture.heap = heapInUse() - before;

    const auto folders = fixture.index.folders();
    const std::vector<AssetIndex::FolderPointer> all(folders.begin(), folders.end());
    for (size_t step = 0; step < 1000; ++step) {
        const auto& folder = all[step * 7919 % all.size()];
        fixture.sample.push_back(folder->assetAt(step % folder->size()));
    }
}

void snapshot(benchmark::State& state) {
    const AssetIndex& index = fixture().index;
    for (auto _ : state) {
        AssetIndex copy = index;
        benchmark::DoNotOptimize(copy);
    }
}

// As the main thread does it, while a page holds a copy.
void change(benchmark::State& state) {
    AssetIndex index = fixture().index;
    size_t step = 0;
    for (auto _ : state) {
        const AssetIndex held = index;
        Asset asset = fixture().sample[step % fixture().sample.size()];
        asset.modified = asset.modified + double(++step);
        const AssetIndex::Changes changes{{}, {asset}};
        const auto start = bench::Clock::now();
        AssetIndex next = index.applying(changes);
        std::swap(index, next);
        state.SetIterationTime(bench::millisecondsSince(start) / 1000);
        benchmark::DoNotOptimize(index);
    }
}

void subtree(benchmark::State& state) {
    const AssetIndex& index = fixture().index;
    size_t step = 0;
    for (auto _ : state) {
        const Location batch = fixture().sample[step++ % fixture().sample.size()].url.parent().parent();
        benchmark::DoNotOptimize(index.foldersUnder(batch));
    }
}

void derived(benchmark::State& state) {
    const Fixture& fixture = ::fixture();
    for (auto _ : state) {
        const auto start = bench::Clock::now();
        const auto made = DerivedIndex::compute(fixture.index, fixture.projects, {}, fixture.root, Date::now());
        // Without its end, which the library leaves to a worker that nobody waits for.
        state.SetIterationTime(bench::millisecondsSince(start) / 1000);
        benchmark::DoNotOptimize(made);
    }
}

// Prints the real time of each benchmark in milliseconds, the median of its repetitions.
class Lines : public benchmark::BenchmarkReporter {
public:
    bool ReportContext(const Context&) override { return true; }
    void ReportRuns(const std::vector<Run>& runs) override {
        for (const Run& run : runs)
            if (run.run_type == Run::RT_Iteration)
                m_milliseconds[run.run_name.function_name].push_back(run.real_accumulated_time / double(run.iterations)
                                                                     * 1000);
    }
    void Finalize() override {
        for (const auto& [name, values] : m_milliseconds)
            bench::report(name.c_str(), bench::median(values));
    }

private:
    std::map<std::string, std::vector<double>> m_milliseconds;
};

} // namespace

int main(int count, char** arguments) {
    if (count != 2) {
        std::fprintf(stderr, "usage: bench_index LIBRARY\n");
        return 2;
    }
    load(arguments[1]);
    const double files = double(fixture().index.count());
    bench::report("index_files", files);
    bench::report("index_bytes", double(fixture().index.bytes()) / files);
    bench::report("index_heap", double(fixture().heap) / files);

    benchmark::RegisterBenchmark("index_snapshot", snapshot)->Repetitions(5);
    benchmark::RegisterBenchmark("index_change", change)->UseManualTime()->Iterations(200)->Repetitions(5);
    benchmark::RegisterBenchmark("index_subtree", subtree)->Repetitions(5);
    benchmark::RegisterBenchmark("derived", derived)->UseManualTime()->Iterations(3)->Repetitions(5);
    Lines lines;
    benchmark::RunSpecifiedBenchmarks(&lines);
}
