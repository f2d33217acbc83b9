#pragma once

#include <cstddef>
#include <istream>
#include <string>
#include <vector>

/// One subcase of a strength-reduction analysis, a value of each column for every row of its block.
struct SafetySubcase {
    std::wstring name;
    std::vector<int> iterations; ///< of the row's own step
    std::vector<double> displacement;
    std::vector<double> safety;    ///< factor of safety
    std::vector<char> isConverged; ///< the row's flag is "T"
};

struct SafetyHistory {
    std::vector<SafetySubcase> subcases; ///< in file order
    /// Numbers, from 1, of the first lines in blocks that have fewer than four fields; they are left out.
    std::vector<std::size_t> shortLines;
    std::size_t shortLineCount = 0; ///< of all of them
};

/// As many as SafetyHistory::shortLines names.
inline constexpr std::size_t kMostNamedLines = 5;

/// Where the solver leaves the history of a document: beside it, under its name and the one given.
std::wstring safetyHistoryPath(const std::wstring& documentPath, const std::wstring& name);

/// Reads blocks that begin with a line "SUBCASE", whose text from its eleventh character on is the name, and
/// end with an empty line: rows of iterations, displacement, factor of safety and flag, and headings that
/// begin with "ITERATION". What is no number is 0. Texts are in the host's code page; of a line only the
/// first 4096 bytes count. A stream that fails ends the history; its state says so.
SafetyHistory readSafetyHistory(std::istream& in);

/// A point of a curve.
struct SafetyPoint {
    double x;
    double y;
};
/// The factor over the displacement, of the rows whose flag is set.
std::vector<SafetyPoint> displacementCurve(const SafetySubcase& subcase);
/// The factor over the iterations up to and with each row, of all rows.
std::vector<SafetyPoint> iterationCurve(const SafetySubcase& subcase);
