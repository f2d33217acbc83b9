#pragma once

#include <algorithm>
#include <chrono>
#include <vector>

// What work takes, in seconds of the wall clock.

template <class Work>
double secondsOf(Work&& work) {
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

/// The least of several runs, for work that others on the machine only lengthen.
template <class Work>
double fastest(int runs, Work&& work) {
    double best = secondsOf(work);
    for (int run = 1; run < runs; ++run)
        best = std::min(best, secondsOf(work));
    return best;
}

template <class Work>
double median(int runs, Work&& work) {
    std::vector<double> times;
    for (int run = 0; run < runs; ++run)
        times.push_back(secondsOf(work));
    const auto middle = times.begin() + runs / 2;
    std::nth_element(times.begin(), middle, times.end());
    return *middle;
}
