#pragma once

#include <algorithm>
#include <chrono>
#include <ctime>
#include <vector>

// What work takes, in seconds.

/// By the clock on the wall.
template <class Work>
double secondsOf(Work&& work) {
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

/// Of the processor, for work in one thread: what others on the machine do in between does not count.
template <class Work>
double processorSecondsOf(Work&& work) {
    const std::clock_t start = std::clock();
    work();
    return static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
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
