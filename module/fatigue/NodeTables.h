#pragma once

#include <cstddef>
#include <memory>
#include <vector>

namespace fatigue {

/// The node values of all loads: for each load a number of component arrays, one float a mesh node, zero at
/// the start. One allocation a load.
class NodeTables {
  public:
    NodeTables(std::size_t loads, std::size_t componentsPerLoad, std::size_t nodes)
        : nodes_(nodes) {
        for (std::size_t load = 0; load < loads; ++load) {
            values_.push_back(std::make_unique<float[]>(componentsPerLoad * nodes));
            for (std::size_t c = 0; c < componentsPerLoad; ++c)
                arrays_.push_back(values_.back().get() + c * nodes);
        }
        for (std::size_t load = 0; load < loads; ++load)
            loads_.push_back(arrays_.data() + load * componentsPerLoad);
    }

    float** load(std::size_t index) { return loads_[index]; }
    float*** loads() { return loads_.data(); }
    std::size_t loadCount() const { return loads_.size(); }
    std::size_t nodeCount() const { return nodes_; }

  private:
    std::size_t nodes_;
    std::vector<std::unique_ptr<float[]>> values_;
    std::vector<float*> arrays_;
    std::vector<float**> loads_;
};

} // namespace fatigue
