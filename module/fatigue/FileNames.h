#pragma once

#include <string>

namespace fatigue {

/// The files of one run. They lie beside the model document.
struct FileNames {
    std::wstring resultFileStem; ///< without extension; the solver and the host know the result by it
    std::wstring solverBasePath;
    std::wstring interfaceFilePath;
    std::wstring textMirrorPath;
};

/// `docPathStem` is the document's path without extension; the names are those of the analysis that is read
/// and of the one that the result goes to.
FileNames fileNames(const std::wstring& docPathStem, const std::wstring& analysisName,
                    const std::wstring& resultAnalysisName);

} // namespace fatigue
