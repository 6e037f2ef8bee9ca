#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace tessaro {

// Seconds that `work` takes.
double Time(const std::function<void()>& work);
// Seconds that it keeps a processor busy with this thread: what else the machine does counts less.
double ProcessorTime(const std::function<void()>& work);
// 0 of no values.
double Median(std::vector<double> values);
// The value that 99 % of them do not exceed; 0 of no values.
double Nearly(std::vector<double> values);

// What a program that ran to its end took, from its start on.
struct ProcessFigures {
  double seconds = 0;
  int64_t peak_kib = 0;  // the most memory that it held at any time
};
// Runs a program with its output thrown away. Ends this program when that one cannot be run or fails.
ProcessFigures RunProgram(const std::vector<std::string>& arguments);
// The path of the program that is running.
std::string OwnPath();

struct Measured {
  const char* what;
  double value;
};
// Prints what was measured beside the reference of the same run, both in `unit`, and their ratio.
void Print(Measured work, const char* unit, Measured reference);
// Ends the program when what it measures has failed.
void Check(bool good, const char* what);

}  // namespace tessaro
