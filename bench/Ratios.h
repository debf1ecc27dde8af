#pragma once

#include <string>
#include <vector>

// One line of the report: how our benchmark's time stands beside a peer's, both of this run.
struct Ratio
{
    std::string ours;  // the names of the benchmarks, with their arguments, as Google Benchmark prints them
    std::string peer;
    std::string label;  // what is compared, for the reader
};

// The main of a benchmark program: runs the benchmarks that the command line selects, then prints each
// ratio whose two sides ran: "label: ours / peer = 0.83". Gives the exit status.
int RunBenchmarks(int argc, char** argv, const std::vector<Ratio>& ratios);
