#include "Ratios.h"

#include <benchmark/benchmark.h>

#include <cstdio>
#include <map>

namespace
{
// Prints as the console reporter does, and keeps the time of each benchmark. Of repetitions the median
// counts.
class KeepingReporter : public benchmark::ConsoleReporter
{
public:
    void ReportRuns(const std::vector<Run>& runs) override
    {
        ConsoleReporter::ReportRuns(runs);
        for (const Run& run : runs) {
            const bool isMedian = run.aggregate_name == "median";
            if (!run.error_occurred && (run.run_type == Run::RT_Iteration || isMedian))
                mTimes[run.run_name.str()] = run.GetAdjustedRealTime() / GetUnit(run);
        }
    }

    double GetSeconds(const std::string& name) const
    {
        const auto found = mTimes.find(name);
        return found == mTimes.end() ? 0 : found->second;
    }

private:
    static double GetUnit(const Run& run) { return benchmark::GetTimeUnitMultiplier(run.time_unit); }

    std::map<std::string, double> mTimes;
};
}  // namespace

int RunBenchmarks(int argc, char** argv, const std::vector<Ratio>& ratios)
{
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 2;
    KeepingReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    for (const Ratio& ratio : ratios) {
        const double ours = reporter.GetSeconds(ratio.ours);
        const double peer = reporter.GetSeconds(ratio.peer);
        if (ours > 0 && peer > 0)
            std::printf("%s: ours %.6g s, peer %.6g s, ratio %.2f\n", ratio.label.c_str(), ours, peer,
                        ours / peer);
    }
    return 0;
}
