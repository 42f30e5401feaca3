#pragma once
// A console reporter that also keeps the time of every benchmark (the median when it ran with
// repetitions), so that a benchmark program can print its ratios to references measured in the
// same run.

#include <benchmark/benchmark.h>

#include <cstdio>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace zephra::bench {

// Registers a benchmark of whole runs as these programs measure them: real time in
// milliseconds, repeated, reported by its aggregates (the median among them).
template <typename TRun>
benchmark::internal::Benchmark* AddRepeated(const char* name, TRun run, int repetitions) {
  return benchmark::RegisterBenchmark(name, run)
      ->Unit(benchmark::kMillisecond)
      ->UseRealTime()
      ->Repetitions(repetitions)
      ->ReportAggregatesOnly(true);
}

class TRatioReporter : public benchmark::ConsoleReporter {
 public:
  void ReportRuns(const std::vector<Run>& runs) override {
    for (const Run& run : runs) {
      const bool median = run.run_type == Run::RT_Aggregate && run.aggregate_name == "median";
      const bool single = run.run_type == Run::RT_Iteration && run.repetitions <= 1;
      if (median || single) {
        FTimes[run.run_name.function_name] = run.GetAdjustedRealTime();
      }
    }
    ConsoleReporter::ReportRuns(runs);
  }

  // One line per pair: the time of the first over the time of the second, when both ran.
  void PrintRatios(const std::vector<std::pair<std::string, std::string>>& pairs) const {
    for (const auto& [measured, reference] : pairs) {
      const auto a = FTimes.find(measured);
      const auto b = FTimes.find(reference);
      if (a != FTimes.end() && b != FTimes.end() && b->second > 0.0) {
        std::printf("ratio %-28s / %-28s = %.3f\n", measured.c_str(), reference.c_str(),
                    a->second / b->second);
      }
    }
  }

 private:
  std::map<std::string, double> FTimes;
};

}  // namespace zephra::bench
